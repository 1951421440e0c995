#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tavo/simulator/models/spd_image.h>

namespace {

using TAVO::simulator::spdImage;

TEST(SpdImage, IsAModuleThatDecodeDimmsUnderstands) {
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
