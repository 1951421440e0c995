#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tavo/simulator/models/post_codes.h>
#include <tavo/simulator/models/rom_emulation.h>
#include <tests/simulator/models/hand_clock.h>

namespace {

using namespace TAVO::simulator;
using Entry = PostCodes::Entry;

struct PostCodesTest : testing::Test, tests::HandClock {
    RomEmulation rom{board};
    std::function<bool()> fromRom = [this] { return rom.servesBoot(); };
    PostCodes codes{board, fromRom};

    void bootWith(PostCodes& observed, PostCodes::Options options) {
        observed.setOptions(options);
        board->setPower(true);
        advance(Board::bootDuration);
    }
    static std::vector<int> codesOf(const std::vector<Entry>& entries) {
        std::vector<int> found;
        for (const auto& entry : entries)
            found.push_back(entry.code);
        return found;
    }
};

TEST_F(PostCodesTest, show_nothing_before_the_first_code) {
    EXPECT_EQ(codes.last(), -1);
    board->setPower(true);
    advance(249'999);
    EXPECT_EQ(codes.last(), -1);
    advance(1);
    EXPECT_EQ(codes.last(), 0x01);
}

TEST_F(PostCodesTest, follow_a_boot_in_order_of_time_to_its_end) {
    board->setPower(true);
    advance(1'500'000);
    const auto half = codes.entries().size();
    advance(Board::bootDuration);
    const auto entries = codes.entries();
    EXPECT_LT(half, entries.size());
    EXPECT_GT(entries.size(), 50u);
    EXPECT_EQ(entries.back(), (Entry{PostCodes::bootEnd, 0x80, false, Board::bootDuration}));
    EXPECT_EQ(entries.front(), (Entry{0x01, 0x80, true, 250'000}));
    for (std::size_t i = 1; i < entries.size(); ++i) {
        EXPECT_LE(entries[i - 1].time, entries[i].time);
        EXPECT_FALSE(entries[i].firstAfterPowerOn);
    }
    EXPECT_EQ(codes.last(), PostCodes::bootEnd);
}

TEST_F(PostCodesTest, are_the_same_whether_watched_or_read_at_the_end) {
    PostCodes watched{board, fromRom};
    board->setPower(true);
    for (int i = 0; i < 400; ++i) {
        advance(10'000);
        watched.last();
    }
    EXPECT_EQ(watched.entries(), codes.entries());
}

TEST_F(PostCodesTest, of_a_boot_cut_short_end_there_even_when_nobody_looked) {
    board->setPower(true);
    advance(1'000'000);
    board->setPower(false);
    advance(5'000'000);
    const auto entries = codes.entries();
    ASSERT_FALSE(entries.empty());
    EXPECT_LE(entries.back().time, 1'000'000u);
    EXPECT_EQ(codes.last(), -1);
}

TEST_F(PostCodesTest, of_a_pulse_that_nobody_watched_belong_to_their_own_boot) {
    board->pulsePower(true, 300'000);
    advance(10'000'000);
    EXPECT_EQ(codesOf(codes.entries()), (std::vector<int>{0x01, 0x02}));
}

TEST_F(PostCodesTest, are_lost_when_the_fifo_is_full_and_not_circular) {
    PostCodes few{board, fromRom, 4};
    bootWith(few, {});
    EXPECT_EQ(codesOf(few.entries()), (std::vector<int>{0x01, 0x02, 0x03, 0x04}));
    EXPECT_TRUE(few.overflow());
    few.clear();
    EXPECT_TRUE(few.overflow());
    few.clearOverflow();
    EXPECT_FALSE(few.overflow());
}

TEST_F(PostCodesTest, push_out_the_oldest_of_a_circular_fifo) {
    PostCodes few{board, fromRom, 3};
    bootWith(few, {.circular = true});
    EXPECT_EQ(codesOf(few.entries()), (std::vector<int>{0xA2, 0xAD, 0xAA}));
    EXPECT_TRUE(few.overflow());
}

TEST_F(PostCodesTest, that_repeat_are_stored_once_when_asked) {
    PostCodes all{board, fromRom};
    bootWith(codes, {.discardRepeated = true});
    const auto found = codesOf(codes.entries());
    EXPECT_EQ(std::adjacent_find(found.begin(), found.end()), found.end());
    EXPECT_LT(found.size(), all.entries().size());
    const auto repeated = codesOf(all.entries());
    EXPECT_NE(std::adjacent_find(repeated.begin(), repeated.end()), repeated.end());
}

TEST_F(PostCodesTest, of_two_boots_queue_up_unless_power_on_empties_the_fifo) {
    PostCodes fresh{board, fromRom};
    bootWith(fresh, {.resetAtPowerOn = true});
    const auto once = codes.entries();
    board->setPower(false);
    board->setPower(true);
    advance(Board::bootDuration);
    EXPECT_EQ(codes.entries().size(), 2 * once.size());
    EXPECT_EQ(fresh.entries(), once);
}

TEST_F(PostCodesTest, of_a_reboot_count_their_time_from_power_on) {
    bootWith(codes, {});
    codes.clear();
    advance(7'000'000);
    board->reboot();
    advance(250'000);
    EXPECT_EQ(codes.entries(), (std::vector<Entry>{{0x01, 0x80, false, 10'250'000}}));
}

TEST_F(PostCodesTest, of_another_port_or_while_disabled_are_not_captured) {
    PostCodes disabled{board, fromRom};
    disabled.setEnabled(false);
    bootWith(codes, {.port = 0x84});
    EXPECT_TRUE(codes.entries().empty());
    EXPECT_EQ(codes.last(), -1);
    EXPECT_TRUE(disabled.entries().empty());
}

TEST_F(PostCodesTest, tell_of_cleared_settings) {
    board->clearCmos();
    bootWith(codes, {});
    EXPECT_THAT(codesOf(codes.entries()), testing::Contains(PostCodes::cmosCleared).Times(1));
    board->reboot();
    codes.clear();
    advance(Board::bootDuration);
    EXPECT_THAT(codesOf(codes.entries()), testing::Not(testing::Contains(PostCodes::cmosCleared)));
}

TEST_F(PostCodesTest, begin_with_a_mark_when_the_emulated_rom_serves_the_boot) {
    const std::uint8_t image[] = {0xEA, 0x5B, 0xE0, 0x00, 0xF0};
    ASSERT_TRUE(rom.write(RomEmulation::size - 16, image));
    rom.setEnabled(true);
    bootWith(codes, {});
    EXPECT_EQ(codes.entries().front().code, PostCodes::emulatedRom);
}

TEST_F(PostCodesTest, do_not_tell_of_a_rom_that_was_enabled_after_the_boot_began) {
    const std::uint8_t image[] = {0x00};
    ASSERT_TRUE(rom.write(0, image));
    board->setPower(true);
    board->pulsePower(false, 1'000);
    advance(2'000);
    rom.setEnabled(true);
    advance(Board::bootDuration);
    EXPECT_EQ(codes.entries().front().code, 0x01);
}

} // namespace
