#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <tavo/cli/values/bit_notation.h>
#include <tests/support/failure_text.h>

namespace {

using TAVO::cli::BitNotation;
using TAVO::cli::bitsText;
using TAVO::cli::parseBits;
using TAVO::jtag::BitString;
using Bytes = std::vector<std::uint8_t>;

std::string refusal(std::size_t size, const char* text, BitNotation notation) {
    return support::failureOf<std::invalid_argument>(
        [&] { static_cast<void>(parseBits(size, text, notation)); });
}

TEST(BitNotation, ANumberIsPackedWithItsLowestBitFirst) {
    EXPECT_EQ(parseBits(32, "0x2A45D0C3", BitNotation::number).bytes(), (Bytes{0xC3, 0xD0, 0x45, 0x2A}));
    EXPECT_EQ(parseBits(13, "1fff", BitNotation::number).bytes(), (Bytes{0xFF, 0x1F}));
    EXPECT_EQ(parseBits(23, "1", BitNotation::number).bytes(), (Bytes{0x01, 0x00, 0x00}));
    EXPECT_EQ(parseBits(8, "0000000042", BitNotation::number).bytes(), Bytes{0x42});
    EXPECT_EQ(parseBits(8, "0", BitNotation::number).bytes(), Bytes{0x00});
}

TEST(BitNotation, BytesKeepTheirOrder) {
    EXPECT_EQ(parseBits(32, "c3d0452a", BitNotation::bytes).bytes(), (Bytes{0xC3, 0xD0, 0x45, 0x2A}));
    EXPECT_EQ(parseBits(12, "ef0d", BitNotation::bytes).bytes(), (Bytes{0xEF, 0x0D}));
}

TEST(BitNotation, WhatDoesNotFitTheNumberOfBitsIsRefused) {
    EXPECT_EQ(refusal(8, "100", BitNotation::number), "0x100 has more than 8 bits");
    EXPECT_EQ(refusal(5, "20", BitNotation::number), "'20' has more than 5 bits");
    EXPECT_EQ(refusal(5, "20", BitNotation::bytes), "'20' has more than 5 bits");
    EXPECT_EQ(refusal(8, "0102", BitNotation::bytes), "8 bits are 1 bytes, not 2");
    EXPECT_EQ(refusal(8, "", BitNotation::number), "a number needs at least one hexadecimal digit");
    EXPECT_EQ(refusal(8, "xy", BitNotation::number), "'xy' is not a pair of hexadecimal digits");
}

TEST(BitNotation, NoBitsAreNoBytes) {
    for (const auto notation : {BitNotation::number, BitNotation::bytes}) {
        EXPECT_TRUE(parseBits(0, "", notation).bytes().empty());
        EXPECT_EQ(bitsText({}, notation), "");
    }
    EXPECT_TRUE(parseBits(0, "0", BitNotation::number).bytes().empty());
}

TEST(BitNotation, IsShownWithAllItsDigits) {
    const BitString bits(13, Bytes{0x01, 0x01});
    EXPECT_EQ(bitsText(bits, BitNotation::number), "0x0101");
    EXPECT_EQ(bitsText(bits, BitNotation::bytes), "0101");
    EXPECT_EQ(bitsText(BitString(9, Bytes{0x34, 0x01}), BitNotation::number), "0x134");
    EXPECT_EQ(bitsText(BitString(9, Bytes{0x34, 0x01}), BitNotation::bytes), "3401");
}

} // namespace
