#include <gtest/gtest.h>

#include <tests/simulator/models/hand_clock.h>

namespace {

using TAVO::simulator::Board;

struct BoardTest : testing::Test, tests::HandClock {};

TEST_F(BoardTest, starts_without_power_and_in_reset) {
    EXPECT_FALSE(board->powered());
    EXPECT_FALSE(board->powerGood());
    EXPECT_TRUE(board->inReset());
    EXPECT_FALSE(board->booted());
    EXPECT_EQ(board->sincePowerOn(), std::nullopt);
    EXPECT_EQ(board->powerOnCount(), 0u);
}

TEST_F(BoardTest, comes_up_in_order_power_good_reset_boot) {
    board->setPower(true);
    EXPECT_TRUE(board->powered());
    advance(Board::powerGoodDelay - 1);
    EXPECT_FALSE(board->powerGood());
    advance(1);
    EXPECT_TRUE(board->powerGood());
    EXPECT_TRUE(board->inReset());
    advance(Board::resetDelay - Board::powerGoodDelay);
    EXPECT_FALSE(board->inReset());
    EXPECT_FALSE(board->booted());
    advance(Board::bootDuration);
    EXPECT_TRUE(board->booted());
    EXPECT_EQ(board->sincePowerOn(), Board::resetDelay + Board::bootDuration);
}

TEST_F(BoardTest, switching_on_twice_is_one_boot) {
    board->setPower(true);
    advance(1000);
    board->setPower(true);
    EXPECT_EQ(board->powerOnCount(), 1u);
    EXPECT_EQ(board->sincePowerOn(), 1000u);
}

TEST_F(BoardTest, switching_off_ends_everything_at_once) {
    board->setPower(true);
    advance(Board::bootDuration);
    board->setPower(false);
    EXPECT_FALSE(board->powerGood());
    EXPECT_TRUE(board->inReset());
    EXPECT_FALSE(board->booted());
}

TEST_F(BoardTest, pulse_ends_at_its_own_time_however_late_one_looks) {
    board->setPower(true);
    advance(Board::bootDuration);
    board->pulsePower(false, 500'000);
    EXPECT_FALSE(board->powered());
    advance(700'000);
    EXPECT_EQ(board->sincePowerOn(), 200'000u);
    EXPECT_EQ(board->powerOnCount(), 2u);
}

TEST_F(BoardTest, switching_during_a_pulse_cancels_its_end) {
    board->pulsePower(true, 500'000);
    advance(100'000);
    board->setPower(true);
    advance(1'000'000);
    EXPECT_TRUE(board->powered());
    EXPECT_EQ(board->powerOnCount(), 1u);
}

TEST_F(BoardTest, reboot_begins_a_boot_without_a_power_cycle) {
    board->setPower(true);
    advance(Board::bootDuration);
    board->reboot();
    EXPECT_TRUE(board->powerGood());
    EXPECT_TRUE(board->inReset());
    EXPECT_FALSE(board->booted());
    EXPECT_EQ(board->powerOnCount(), 1u);
    EXPECT_EQ(board->bootCount(), 2u);
    EXPECT_EQ(board->sincePowerOn(), Board::bootDuration);
    EXPECT_EQ(board->sinceBoot(), 0u);
}

TEST_F(BoardTest, reboot_without_power_does_nothing) {
    board->reboot();
    EXPECT_EQ(board->bootCount(), 0u);
}

TEST_F(BoardTest, only_the_boot_after_clearing_finds_cleared_settings) {
    board->setPower(true);
    board->clearCmos();
    EXPECT_FALSE(board->bootFoundClearedCmos());
    board->reboot();
    EXPECT_TRUE(board->bootFoundClearedCmos());
    board->reboot();
    EXPECT_FALSE(board->bootFoundClearedCmos());
    EXPECT_EQ(board->cmosClearCount(), 1u);
}

TEST_F(BoardTest, time_stands_still_when_the_clock_goes_back) {
    board->setPower(true);
    advance(400'000);
    EXPECT_EQ(board->sincePowerOn(), 400'000u);
    *time -= 300'000;
    EXPECT_EQ(board->sincePowerOn(), 400'000u);
}

} // namespace
