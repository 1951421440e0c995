#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <tavo/cli/values/i2c_grid.h>

namespace {

using namespace TAVO::cli;

constexpr const char* columns = "     0  1  2  3  4  5  6  7  8  9  a  b  c  d  e  f";

TEST(I2cRange, IsTwoNumbersWithADash) {
    EXPECT_EQ(parseRange("0-255", 0xff), (NumberRange{0, 255}));
    EXPECT_EQ(parseRange("0x10-0x1F", 0xff), (NumberRange{16, 31}));
    EXPECT_EQ(parseRange("010-011", 0xff), (NumberRange{8, 9}));
    EXPECT_EQ(parseRange("7-0x7", 0xff), (NumberRange{7, 7}));
    EXPECT_EQ(parseRange("0x0-0xffff", 0xffff).size(), 65536u);
}

TEST(I2cRange, IsRefusedWhenItIsNone) {
    for (const auto* text : {"", "-", "5", "5-", "-5", "5-4", "0-256", "0x-0x1", "a-b", "08-9", "1-2-3",
                             "1 -2", "1-99999999999"})
        EXPECT_THROW(parseRange(text, 0xff), std::invalid_argument) << text;
}

TEST(I2cDetectGrid, HasBlanksOutsideTheRangeAndDashesWhereNobodyAnswers) {
    EXPECT_EQ(detectGrid({0x08, 0x77}, {0x08, 0x48, 0x77}),
              std::string(columns) + "\n"
                                     "00:                         08 -- -- -- -- -- -- -- \n"
                                     "10: -- -- -- -- -- -- -- -- -- -- -- -- -- -- -- -- \n"
                                     "20: -- -- -- -- -- -- -- -- -- -- -- -- -- -- -- -- \n"
                                     "30: -- -- -- -- -- -- -- -- -- -- -- -- -- -- -- -- \n"
                                     "40: -- -- -- -- -- -- -- -- 48 -- -- -- -- -- -- -- \n"
                                     "50: -- -- -- -- -- -- -- -- -- -- -- -- -- -- -- -- \n"
                                     "60: -- -- -- -- -- -- -- -- -- -- -- -- -- -- -- -- \n"
                                     "70: -- -- -- -- -- -- -- 77                         \n");
}

TEST(I2cDumpGrid, ShowsBytesAndCharacters) {
    const std::vector<RegisterByte> bytes = {0x00, 0xff, 0x41, 0x7e, 0x7f, 0x1f, std::nullopt, 0x20};
    EXPECT_EQ(dumpGrid(0x1c, bytes, false),
              std::string(columns) +
                  "    0123456789abcdef\n"
                  "10:                                     00 ff 41 7e                ..A~\n"
                  "20: 7f 1f XX 20                                        ??X             \n");
}

TEST(I2cDumpGrid, HasWiderNumbersForWiderRegisters) {
    const std::vector<RegisterByte> bytes(16, std::uint8_t{0x61});
    EXPECT_EQ(dumpGrid(0xfff0, bytes, true),
              "  " + std::string(columns) +
                  "    0123456789abcdef\n"
                  "fff0: 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61    aaaaaaaaaaaaaaaa\n");
}

} // namespace
