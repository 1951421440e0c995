#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <tavo/cli/values/i2c_messages.h>

namespace {

using namespace TAVO::cli;

std::vector<I2cMessage> parsed(const std::vector<std::string>& words) { return parseI2cMessages(words); }

TEST(I2cMessages, AreWritesWithTheirBytesAndReadsWithTheirLength) {
    EXPECT_EQ(parsed({"w2@0x50", "0x00", "0x10", "r16"}),
              (std::vector<I2cMessage>{{0x50, false, 0, {0x00, 0x10}}, {0x50, true, 16, {}}}));
    EXPECT_EQ(parsed({"r0x10@010", "w0@9"}), (std::vector<I2cMessage>{{8, true, 16, {}}, {9, false, 0, {}}}));
}

TEST(I2cMessages, ContinueFromTheLastByte) {
    EXPECT_EQ(parsed({"w4@1", "7", "5="}).at(0).data, (std::vector<std::uint8_t>{7, 5, 5, 5}));
    EXPECT_EQ(parsed({"w3@1", "0xff+"}).at(0).data, (std::vector<std::uint8_t>{0xff, 0, 1}));
    EXPECT_EQ(parsed({"w3@1", "1-"}).at(0).data, (std::vector<std::uint8_t>{1, 0, 0xff}));
}

TEST(I2cMessages, AreRefusedWhenTheyAreNone) {
    for (const auto& words : std::vector<std::vector<std::string>>{{""},
                                                                   {"r"},
                                                                   {"w"},
                                                                   {"r1"},
                                                                   {"r1@"},
                                                                   {"r1@0x80"},
                                                                   {"q1@1"},
                                                                   {"r65536@1"},
                                                                   {"r-1@1"},
                                                                   {"w1@1"},
                                                                   {"w1@1", ""},
                                                                   {"w1@1", "="},
                                                                   {"w1@1", "256"},
                                                                   {"w1@1", "1", "2"},
                                                                   {"w1@1", "0x"},
                                                                   {"w1@1", "08"},
                                                                   {"r1@1@1"},
                                                                   {"w1@1", "1p"}})
        EXPECT_THROW(parsed(words), std::invalid_argument) << testing::PrintToString(words);
}

} // namespace
