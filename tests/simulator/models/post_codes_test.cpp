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

TEST_F(PostCodesTest, ShowNothingBeforeTheFirstCode) {
    EXPECT_EQ(codes.last(), -1);
    board->setPower(true);
    advance(249'999);
    EXPECT_EQ(codes.last(), -1);
    advance(1);
    EXPECT_EQ(codes.last(), 0x01);
}

TEST_F(PostCodesTest, FollowABootInOrderOfTimeToItsEnd) {
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

TEST_F(PostCodesTest, TakeCodesThatTheBoardWritesBesidesItsBoot) {
    codes.write(0x55);
    EXPECT_EQ(codes.last(), -1);
    EXPECT_TRUE(codes.entries().empty());
    board->setPower(true);
    advance(100);
    codes.write(0x55);
    EXPECT_EQ(codes.last(), 0x55);
    EXPECT_EQ(codes.entries(), (std::vector{Entry{0x55, 0x80, true, 100}}));
    codes.setEnabled(false);
    codes.write(0x56);
    EXPECT_EQ(codes.last(), 0x55);
}

TEST_F(PostCodesTest, AreTheSameWhetherWatchedOrReadAtTheEnd) {
    PostCodes watched{board, fromRom};
    board->setPower(true);
    for (int i = 0; i < 400; ++i) {
        advance(10'000);
        watched.last();
    }
    EXPECT_EQ(watched.entries(), codes.entries());
}

TEST_F(PostCodesTest, OfABootCutShortEndThereEvenWhenNobodyLooked) {
    board->setPower(true);
    advance(1'000'000);
    board->setPower(false);
    advance(5'000'000);
    const auto entries = codes.entries();
    ASSERT_FALSE(entries.empty());
    EXPECT_LE(entries.back().time, 1'000'000u);
    EXPECT_EQ(codes.last(), -1);
}

TEST_F(PostCodesTest, OfAPulseThatNobodyWatchedBelongToTheirOwnBoot) {
    board->pulsePower(true, 300'000);
    advance(10'000'000);
    EXPECT_EQ(codesOf(codes.entries()), (std::vector<int>{0x01, 0x02}));
}

TEST_F(PostCodesTest, AreLostWhenTheFifoIsFullAndNotCircular) {
    PostCodes few{board, fromRom, 4};
    bootWith(few, {});
    EXPECT_EQ(codesOf(few.entries()), (std::vector<int>{0x01, 0x02, 0x03, 0x04}));
    EXPECT_TRUE(few.overflow());
    few.clear();
    EXPECT_TRUE(few.overflow());
    few.clearOverflow();
    EXPECT_FALSE(few.overflow());
}

TEST_F(PostCodesTest, PushOutTheOldestOfACircularFifo) {
    PostCodes few{board, fromRom, 3};
    bootWith(few, {.circular = true});
    EXPECT_EQ(codesOf(few.entries()), (std::vector<int>{0xA2, 0xAD, 0xAA}));
    EXPECT_TRUE(few.overflow());
}

TEST_F(PostCodesTest, ThatRepeatAreStoredOnceWhenAsked) {
    PostCodes all{board, fromRom};
    bootWith(codes, {.discardRepeated = true});
    const auto found = codesOf(codes.entries());
    EXPECT_EQ(std::adjacent_find(found.begin(), found.end()), found.end());
    EXPECT_LT(found.size(), all.entries().size());
    const auto repeated = codesOf(all.entries());
    EXPECT_NE(std::adjacent_find(repeated.begin(), repeated.end()), repeated.end());
}

TEST_F(PostCodesTest, OfTwoBootsQueueUpUnlessPowerOnEmptiesTheFifo) {
    PostCodes fresh{board, fromRom};
    bootWith(fresh, {.resetAtPowerOn = true});
    const auto once = codes.entries();
    board->setPower(false);
    board->setPower(true);
    advance(Board::bootDuration);
    EXPECT_EQ(codes.entries().size(), 2 * once.size());
    EXPECT_EQ(fresh.entries(), once);
}

TEST_F(PostCodesTest, OfARebootCountTheirTimeFromPowerOn) {
    bootWith(codes, {});
    codes.clear();
    advance(7'000'000);
    board->reboot();
    advance(250'000);
    EXPECT_EQ(codes.entries(), (std::vector<Entry>{{0x01, 0x80, false, 10'250'000}}));
}

TEST_F(PostCodesTest, OfAnotherPortOrWhileDisabledAreNotCaptured) {
    PostCodes disabled{board, fromRom};
    disabled.setEnabled(false);
    bootWith(codes, {.port = 0x84});
    EXPECT_TRUE(codes.entries().empty());
    EXPECT_EQ(codes.last(), -1);
    EXPECT_TRUE(disabled.entries().empty());
}

TEST_F(PostCodesTest, TellOfClearedSettings) {
    board->clearCmos();
    bootWith(codes, {});
    EXPECT_THAT(codesOf(codes.entries()), testing::Contains(PostCodes::cmosCleared).Times(1));
    board->reboot();
    codes.clear();
    advance(Board::bootDuration);
    EXPECT_THAT(codesOf(codes.entries()), testing::Not(testing::Contains(PostCodes::cmosCleared)));
}

TEST_F(PostCodesTest, BeginWithAMarkWhenTheEmulatedRomServesTheBoot) {
    const std::uint8_t image[] = {0xEA, 0x5B, 0xE0, 0x00, 0xF0};
    ASSERT_TRUE(rom.write(RomEmulation::size - 16, image));
    rom.setEnabled(true);
    bootWith(codes, {});
    EXPECT_EQ(codes.entries().front().code, PostCodes::emulatedRom);
}

TEST_F(PostCodesTest, DoNotTellOfARomThatWasEnabledAfterTheBootBegan) {
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
