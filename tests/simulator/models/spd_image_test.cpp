#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include <gtest/gtest.h>

#include <tavo/simulator/models/spd_image.h>

namespace {

using TAVO::simulator::spdImage;

// By nibbles, from the polynomial x^16 + x^12 + x^5 + 1.
unsigned checksumOf(const std::vector<std::uint8_t>& image, std::size_t length) {
    std::array<unsigned, 16> table{};
    for (unsigned nibble = 0; nibble < 16; ++nibble)
        table[nibble] = nibble * 0x1021;
    unsigned crc = 0;
    const auto take = [&](unsigned nibble) { crc = ((crc << 4) & 0xFFFF) ^ table[(crc >> 12) ^ nibble]; };
    for (std::size_t i = 0; i < length; ++i) {
        take(image[i] >> 4U);
        take(image[i] & 15U);
    }
    return crc;
}

TEST(SpdImage, HasAChecksumThatAnotherComputationAgreesWith) {
    const std::vector<std::uint8_t> text{'1', '2', '3', '4', '5', '6', '7', '8', '9'};
    ASSERT_EQ(checksumOf(text, text.size()), 0x31C3u);

    const auto image = spdImage();
    ASSERT_EQ(image.size(), 256u);
    EXPECT_EQ(image[126] | image[127] << 8, static_cast<int>(checksumOf(image, 117)));
}

} // namespace
