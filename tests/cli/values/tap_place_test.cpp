#include <stdexcept>
#include <string>

#include <gtest/gtest.h>

#include <tavo/cli/values/tap_place.h>

namespace {

using namespace TAVO::cli;

/// Bits in the order of shifting.
BitString bits(const std::string& text) {
    BitString result(text.size(), false);
    for (std::size_t i = 0; i < text.size(); ++i)
        result.set(i, text[i] == '1');
    return result;
}

TEST(TapPlace, SurroundsAnInstructionWithBypass) {
    const std::vector<std::size_t> lengths{2, 3, 4};
    EXPECT_EQ(TapPlace(lengths, 0).around(JtagRegister::instruction, bits("01")), bits("011111111"));
    EXPECT_EQ(TapPlace(lengths, 1).around(JtagRegister::instruction, bits("010")), bits("110101111"));
    EXPECT_EQ(TapPlace(lengths, 2).around(JtagRegister::instruction, bits("0010")), bits("111110010"));
}

TEST(TapPlace, SurroundsDataWithABitForEachOther) {
    const std::vector<std::size_t> lengths{2, 3, 4};
    EXPECT_EQ(TapPlace(lengths, 0).around(JtagRegister::data, bits("101")), bits("10100"));
    EXPECT_EQ(TapPlace(lengths, 1).around(JtagRegister::data, bits("101")), bits("01010"));
    EXPECT_EQ(TapPlace(lengths, 2).around(JtagRegister::data, bits("101")), bits("00101"));
    EXPECT_EQ(TapPlace({5}, 0).around(JtagRegister::data, bits("1")), bits("1"));
}

TEST(TapPlace, TakesItsOwnBitsOutOfWhatCameBack) {
    const std::vector<std::size_t> lengths{2, 3, 4};
    EXPECT_EQ(TapPlace(lengths, 1).inside(JtagRegister::instruction, bits("110101111"), 3), bits("010"));
    EXPECT_EQ(TapPlace(lengths, 2).inside(JtagRegister::data, bits("11010"), 3), bits("010"));
}

TEST(TapPlace, RefusesWhatTheChainHasNot) {
    EXPECT_THROW(TapPlace({2, 3}, 2), std::invalid_argument);
    EXPECT_THROW(TapPlace({}, 0), std::invalid_argument);
    EXPECT_THROW(TapPlace({2, 3}, 1).around(JtagRegister::instruction, bits("01")), std::invalid_argument);
}

TEST(TapPlace, HasLengthsThatAreGivenInALine) {
    EXPECT_EQ(parseLengths("8,5,10"), (std::vector<std::size_t>{8, 5, 10}));
    EXPECT_EQ(parseLengths("4"), (std::vector<std::size_t>{4}));
    for (const auto* text :
         {"", ",", "8,", ",8", "8,,5", "1", "0", "x", "8 5", "8;5", "4097", "-2", "99999999999"})
        EXPECT_THROW(parseLengths(text), std::invalid_argument) << text;
}

} // namespace
