#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <tavo/cli/values/bit_string.h>
#include <tests/support/failure_text.h>

namespace {

using TAVO::cli::BitNotation;
using TAVO::cli::bitsText;
using TAVO::cli::BitString;
using TAVO::cli::parseBits;
using Bytes = std::vector<std::uint8_t>;

std::string refusal(std::size_t size, const char* text, BitNotation notation) {
    return support::failureOf<std::invalid_argument>(
        [&] { static_cast<void>(parseBits(size, text, notation)); });
}

TEST(BitString, ANumberIsPackedWithItsLowestBitFirst) {
    EXPECT_EQ(parseBits(32, "0x2A45D0C3", BitNotation::number).bytes(), (Bytes{0xC3, 0xD0, 0x45, 0x2A}));
    EXPECT_EQ(parseBits(13, "1fff", BitNotation::number).bytes(), (Bytes{0xFF, 0x1F}));
    EXPECT_EQ(parseBits(23, "1", BitNotation::number).bytes(), (Bytes{0x01, 0x00, 0x00}));
    EXPECT_EQ(parseBits(8, "0000000042", BitNotation::number).bytes(), Bytes{0x42});
    EXPECT_EQ(parseBits(8, "0", BitNotation::number).bytes(), Bytes{0x00});
}

TEST(BitString, BytesKeepTheirOrder) {
    EXPECT_EQ(parseBits(32, "c3d0452a", BitNotation::bytes).bytes(), (Bytes{0xC3, 0xD0, 0x45, 0x2A}));
    EXPECT_EQ(parseBits(12, "ef0d", BitNotation::bytes).bytes(), (Bytes{0xEF, 0x0D}));
}

TEST(BitString, WhatDoesNotFitTheNumberOfBitsIsRefused) {
    EXPECT_EQ(refusal(8, "100", BitNotation::number), "0x100 has more than 8 bits");
    EXPECT_EQ(refusal(5, "20", BitNotation::number), "'20' has more than 5 bits");
    EXPECT_EQ(refusal(5, "20", BitNotation::bytes), "'20' has more than 5 bits");
    EXPECT_EQ(refusal(8, "0102", BitNotation::bytes), "8 bits are 1 bytes, not 2");
    EXPECT_EQ(refusal(8, "", BitNotation::number), "a number needs at least one hexadecimal digit");
    EXPECT_EQ(refusal(8, "xy", BitNotation::number), "'xy' is not a pair of hexadecimal digits");
}

TEST(BitString, NoBitsAreNoBytes) {
    for (const auto notation : {BitNotation::number, BitNotation::bytes}) {
        EXPECT_TRUE(parseBits(0, "", notation).bytes().empty());
        EXPECT_EQ(bitsText({}, notation), "");
    }
    EXPECT_TRUE(parseBits(0, "0", BitNotation::number).bytes().empty());
}

TEST(BitString, IsShownWithAllItsDigits) {
    const BitString bits(13, Bytes{0x01, 0x01});
    EXPECT_EQ(bitsText(bits, BitNotation::number), "0x0101");
    EXPECT_EQ(bitsText(bits, BitNotation::bytes), "0101");
    EXPECT_EQ(bitsText(BitString(9, Bytes{0x34, 0x01}), BitNotation::number), "0x134");
    EXPECT_EQ(bitsText(BitString(9, Bytes{0x34, 0x01}), BitNotation::bytes), "3401");
}

TEST(BitString, UnusedBitsAreZero) {
    EXPECT_EQ(BitString(5, true).bytes(), Bytes{0x1F});
    EXPECT_EQ(BitString(5, Bytes{0xFF, 0xFF}), BitString(5, true));
    EXPECT_EQ(BitString(12, Bytes{0xAB}).bytes(), (Bytes{0xAB, 0x00}));
}

TEST(BitString, ReadsNumbersFromAnyPlace) {
    auto bits = BitString(40, false);
    bits.set(5, true);
    bits.set(36, true);
    EXPECT_EQ(bits.number(5, 32), 0x80000001u);
    EXPECT_TRUE(bits.isAll(6, 36, false));
    EXPECT_FALSE(bits.isAll(6, 37, false));
    bits.set(36, false);
    EXPECT_TRUE(bits.isAll(6, 40, false));
}

} // namespace
