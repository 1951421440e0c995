#include <algorithm>
#include <stdexcept>

#include <gtest/gtest.h>

#include <tavo/simulator/models/rom_emulation.h>
#include <tests/simulator/models/hand_clock.h>

namespace {

using TAVO::simulator::RomEmulation;
using Bytes = std::vector<std::uint8_t>;

struct RomEmulationTest : testing::Test, tests::HandClock {
    static constexpr std::int64_t size = RomEmulation::size;
    RomEmulation rom{board};
};

TEST_F(RomEmulationTest, IsErasedFromEndToEndAtFirst) {
    const auto all = rom.read(0, size);
    ASSERT_TRUE(all);
    EXPECT_EQ(std::count(all->begin(), all->end(), 0xFF), size);
    EXPECT_EQ(all->size(), 8388608u);
}

TEST_F(RomEmulationTest, GivesBackWhatWasWrittenWhereItWasWritten) {
    ASSERT_TRUE(rom.write(size - 2, Bytes{1, 2}));
    ASSERT_TRUE(rom.write(10, Bytes{3, 4, 5}));
    EXPECT_EQ(rom.read(size - 4, 4), (Bytes{0xFF, 0xFF, 1, 2}));
    EXPECT_EQ(rom.read(9, 5), (Bytes{0xFF, 3, 4, 5, 0xFF}));
    EXPECT_EQ(rom.read(11, 1), Bytes{4});
}

TEST_F(RomEmulationTest, ReadsAcrossTheEndOfWhatWasWritten) {
    ASSERT_TRUE(rom.write(0, Bytes{7}));
    EXPECT_EQ(rom.read(0, 3), (Bytes{7, 0xFF, 0xFF}));
    EXPECT_EQ(rom.read(100, 2), (Bytes{0xFF, 0xFF}));
}

TEST_F(RomEmulationTest, RefusesWhatDoesNotLieInside) {
    EXPECT_EQ(rom.read(size, 1), std::nullopt);
    EXPECT_EQ(rom.read(-1, 1), std::nullopt);
    EXPECT_EQ(rom.read(0, -1), std::nullopt);
    EXPECT_EQ(rom.read(1, size), std::nullopt);
    EXPECT_FALSE(rom.write(size - 1, Bytes{1, 2}));
    EXPECT_FALSE(rom.write(-1, Bytes{1}));
    EXPECT_EQ(rom.read(size - 1, 1), Bytes{0xFF});
}

TEST_F(RomEmulationTest, HasTheSizeItIsMadeWith) {
    RomEmulation small(board, 3);
    EXPECT_EQ(small.capacity(), 3u);
    EXPECT_TRUE(small.write(0, Bytes{1, 2, 3}));
    EXPECT_FALSE(small.write(0, Bytes{1, 2, 3, 4}));
    EXPECT_EQ(small.read(2, 2), std::nullopt);
    RomEmulation large(board, 16 * 1024 * 1024);
    EXPECT_TRUE(large.write(16 * 1024 * 1024 - 1, Bytes{1}));
    EXPECT_EQ(rom.capacity(), RomEmulation::size);
    EXPECT_THROW(RomEmulation(board, 0), std::invalid_argument);
    EXPECT_THROW(RomEmulation(board, RomEmulation::largestSize + 1), std::invalid_argument);
}

TEST_F(RomEmulationTest, AcceptsEmptyRangesUpToItsEnd) {
    EXPECT_EQ(rom.read(size, 0), Bytes{});
    EXPECT_TRUE(rom.write(size, Bytes{}));
}

TEST_F(RomEmulationTest, KnowsTwoKinds) {
    EXPECT_EQ(rom.romType(), RomEmulation::lpc);
    EXPECT_TRUE(rom.setRomType(RomEmulation::firmwareHub));
    EXPECT_FALSE(rom.setRomType(2));
    EXPECT_EQ(rom.romType(), RomEmulation::firmwareHub);
}

TEST_F(RomEmulationTest, ServesABootWhenEnabledAndNotErased) {
    rom.setEnabled(true);
    EXPECT_FALSE(rom.servesBoot());
    ASSERT_TRUE(rom.write(0, Bytes{0xFF, 0xFF}));
    EXPECT_FALSE(rom.servesBoot());
    ASSERT_TRUE(rom.write(1, Bytes{0}));
    EXPECT_TRUE(rom.servesBoot());
    rom.setEnabled(false);
    EXPECT_FALSE(rom.servesBoot());
}

} // namespace
