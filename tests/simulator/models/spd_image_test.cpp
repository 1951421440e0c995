#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>

#include <gmock/gmock.h>
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

TEST(spd_image, has_a_checksum_that_another_computation_agrees_with) {
    const std::vector<std::uint8_t> text{'1', '2', '3', '4', '5', '6', '7', '8', '9'};
    ASSERT_EQ(checksumOf(text, text.size()), 0x31C3u);

    const auto image = spdImage();
    ASSERT_EQ(image.size(), 256u);
    EXPECT_EQ(image[126] | image[127] << 8, static_cast<int>(checksumOf(image, 117)));
}

TEST(spd_image, is_a_module_that_decode_dimms_understands) {
    const auto stem = testing::TempDir() + "tavo_spd_image_" + std::to_string(std::random_device()());
    const std::filesystem::path dump = stem + ".hex";
    const std::filesystem::path decoded = stem + ".txt";
    {
        std::ofstream out(dump);
        const auto image = spdImage();
        char text[16];
        for (std::size_t i = 0; i < image.size(); ++i) {
            if (i % 16 == 0) {
                std::snprintf(text, sizeof text, "%02x:", static_cast<unsigned>(i));
                out << text;
            }
            std::snprintf(text, sizeof text, " %02x", unsigned{image[i]});
            out << text << (i % 16 == 15 ? "\n" : "");
        }
    }
    const auto command =
        "PATH=$PATH:/usr/sbin decode-dimms -x '" + dump.string() + "' >'" + decoded.string() + "' 2>&1";
    const int status = std::system(command.c_str());
    std::stringstream text;
    text << std::ifstream(decoded).rdbuf();
    std::filesystem::remove(dump);
    std::filesystem::remove(decoded);

    ASSERT_EQ(status, 0) << text.str();
    EXPECT_THAT(text.str(), testing::HasSubstr("EEPROM CRC of bytes 0-116"));
    EXPECT_THAT(text.str(), testing::ContainsRegex("EEPROM CRC of bytes 0-116 +OK"));
    EXPECT_THAT(text.str(), testing::ContainsRegex("Fundamental Memory type +DDR3 SDRAM"));
    EXPECT_THAT(text.str(), testing::ContainsRegex("Module Type +UDIMM"));
    EXPECT_THAT(text.str(), testing::ContainsRegex("Size +2048 MB"));
    EXPECT_THAT(text.str(), testing::ContainsRegex("Part Number +SIM-2048-1333-U"));
    EXPECT_THAT(text.str(), testing::HasSubstr("Number of SDRAM DIMMs detected and decoded: 1"));
}

} // namespace
