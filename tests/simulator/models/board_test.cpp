#include <gtest/gtest.h>

#include <tests/simulator/models/hand_clock.h>

namespace {

using TAVO::simulator::Board;

struct BoardTest : testing::Test, tests::HandClock {};

TEST_F(BoardTest, StartsWithoutPowerAndInReset) {
    EXPECT_FALSE(board->powered());
    EXPECT_FALSE(board->powerGood());
    EXPECT_TRUE(board->inReset());
    EXPECT_FALSE(board->booted());
    EXPECT_EQ(board->sincePowerOn(), std::nullopt);
    EXPECT_EQ(board->powerOnCount(), 0u);
}

TEST_F(BoardTest, ComesUpInOrderPowerGoodResetBoot) {
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

TEST_F(BoardTest, SwitchingOnTwiceIsOneBoot) {
    board->setPower(true);
    advance(1000);
    board->setPower(true);
    EXPECT_EQ(board->powerOnCount(), 1u);
    EXPECT_EQ(board->sincePowerOn(), 1000u);
}

TEST_F(BoardTest, SwitchingOffEndsEverythingAtOnce) {
    board->setPower(true);
    advance(Board::bootDuration);
    board->setPower(false);
    EXPECT_FALSE(board->powerGood());
    EXPECT_TRUE(board->inReset());
    EXPECT_FALSE(board->booted());
}

TEST_F(BoardTest, PulseEndsAtItsOwnTimeHoweverLateOneLooks) {
    board->setPower(true);
    advance(Board::bootDuration);
    board->pulsePower(false, 500'000);
    EXPECT_FALSE(board->powered());
    advance(700'000);
    EXPECT_EQ(board->sincePowerOn(), 200'000u);
    EXPECT_EQ(board->powerOnCount(), 2u);
}

TEST_F(BoardTest, SwitchingDuringAPulseCancelsItsEnd) {
    board->pulsePower(true, 500'000);
    advance(100'000);
    board->setPower(true);
    advance(1'000'000);
    EXPECT_TRUE(board->powered());
    EXPECT_EQ(board->powerOnCount(), 1u);
}

TEST_F(BoardTest, RebootBeginsABootWithoutAPowerCycle) {
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

TEST_F(BoardTest, RebootWithoutPowerDoesNothing) {
    board->reboot();
    EXPECT_EQ(board->bootCount(), 0u);
}

TEST_F(BoardTest, OnlyTheBootAfterClearingFindsClearedSettings) {
    board->setPower(true);
    board->clearCmos();
    EXPECT_FALSE(board->bootFoundClearedCmos());
    board->reboot();
    EXPECT_TRUE(board->bootFoundClearedCmos());
    board->reboot();
    EXPECT_FALSE(board->bootFoundClearedCmos());
    EXPECT_EQ(board->cmosClearCount(), 1u);
}

TEST_F(BoardTest, TimeStandsStillWhenTheClockGoesBack) {
    board->setPower(true);
    advance(400'000);
    EXPECT_EQ(board->sincePowerOn(), 400'000u);
    *time -= 300'000;
    EXPECT_EQ(board->sincePowerOn(), 400'000u);
}

} // namespace
