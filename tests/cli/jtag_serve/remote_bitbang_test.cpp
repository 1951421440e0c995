#include <tavo/cli/jtag_serve/remote_bitbang.h>

#include <string>
#include <string_view>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tests/cli/jtag_serve/cable.h>

namespace {

using namespace std::chrono_literals;
using BitbangCable = tool_test::Cable<TAVO::cli::RemoteBitbang>;
using jtag_test::ChainModel;
using TAVO::cli::RemoteBitbang;
using testing::ElementsAre;
using testing::HasSubstr;

/// How a client asks for TDO in a clock.
enum class Asks { never, low, high, both };

char pins(bool tck, bool tms, bool tdi) {
    return static_cast<char>('0' + (tck ? 4 : 0) + (tms ? 2 : 0) + (tdi ? 1 : 0));
}

std::string clockText(bool tms, bool tdi, Asks asks) {
    std::string text(1, pins(false, tms, tdi));
    if (asks == Asks::low || asks == Asks::both)
        text += 'R';
    text += pins(true, tms, tdi);
    if (asks == Asks::high || asks == Asks::both)
        text += 'R';
    return text;
}

/// A walk through both registers: TMS, and as much TDI.
constexpr std::string_view walkTms = "0110000001011010000000000110"
                                     "100000010001011"
                                     "11110"
                                     "0100000110";
constexpr std::string_view walkTdi = "0000011010000000110101101110"
                                     "000101101000110"
                                     "10110"
                                     "0001011010";

std::string walkText(Asks asks) {
    std::string text;
    for (std::size_t clock = 0; clock < walkTms.size(); ++clock)
        text += clockText(walkTms[clock] == '1', walkTdi[clock] == '1', asks);
    return text + '0';
}

/// What a cable answers, and leaves behind.
struct Walked {
    ChainModel chain;
    std::string answers;
};

Walked bitbangWalk(Asks asks) {
    Walked walked;
    for (std::size_t clock = 0; clock < walkTms.size(); ++clock) {
        const char level = walked.chain.clock(walkTms[clock] == '1', walkTdi[clock] == '1') ? '1' : '0';
        walked.answers.append(asks == Asks::never ? 0u : asks == Asks::both ? 2u : 1u, level);
    }
    return walked;
}

TEST(RemoteBitbang, AnswersInEveryOrderWithOneExchange) {
    ASSERT_EQ(walkTms.size(), walkTdi.size());
    for (const auto asks : {Asks::never, Asks::low, Asks::high, Asks::both}) {
        BitbangCable cable;
        const auto expected = bitbangWalk(asks);
        EXPECT_TRUE(cable.type(walkText(asks)));
        EXPECT_EQ(cable.exchanges, 0);
        cable.conversation.pause(0ms);
        cable.conversation.pause(RemoteBitbang::patience);
        EXPECT_EQ(cable.answers, expected.answers);
        EXPECT_EQ(cable.chain.events, expected.chain.events);
        EXPECT_EQ(cable.exchanges, 1);
        EXPECT_FALSE(cable.port.usesPins());
    }
}

TEST(RemoteBitbang, AnswersInOrderAroundAResetLetter) {
    const auto expected = bitbangWalk(Asks::both);
    std::string text;
    for (std::size_t clock = 0; clock < walkTms.size(); ++clock) {
        const bool tms = walkTms[clock] == '1';
        const bool tdi = walkTdi[clock] == '1';
        text += {pins(false, tms, tdi), 'R', pins(true, tms, tdi), 'r', 'R'};
    }
    BitbangCable cable;
    EXPECT_TRUE(cable.type(text + '0'));
    cable.conversation.end();
    EXPECT_EQ(cable.answers, expected.answers);
}

TEST(RemoteBitbang, AnswersAFloodOfQuestionsInParts) {
    constexpr std::size_t count = 3'000'000;
    BitbangCable cable;
    std::string intoShift;
    for (const bool tms : {false, true, false, false})
        intoShift += clockText(tms, true, Asks::never);
    EXPECT_TRUE(cable.type(intoShift + '0'));
    EXPECT_TRUE(cable.type(std::string(count, 'R')));
    EXPECT_GT(cable.answers.size(), count / 2);
    cable.conversation.end();
    EXPECT_GE(cable.answers.size(), count - count / 4);
}

TEST(RemoteBitbang, AnswersTheSameWhereverTheClientPauses) {
    for (const auto asks : {Asks::low, Asks::high, Asks::both}) {
        const auto expected = bitbangWalk(asks);
        const auto text = walkText(asks);
        for (std::size_t cut = 0; cut <= text.size(); ++cut)
            for (const auto silence : {0ms, RemoteBitbang::patience}) {
                BitbangCable cable;
                EXPECT_TRUE(cable.type(text, cut, silence));
                cable.conversation.end();
                ASSERT_EQ(cable.answers, expected.answers) << "cut " << cut;
                ASSERT_EQ(cable.chain.events, expected.chain.events) << "cut " << cut;
                ASSERT_FALSE(cable.port.usesPins());
            }
    }
}

TEST(RemoteBitbang, AnswersAClientThatWaitsAtEachBit) {
    const auto expected = bitbangWalk(Asks::both);
    BitbangCable cable;
    for (const char command : walkText(Asks::both)) {
        const auto answered = cable.answers.size();
        EXPECT_TRUE(cable.type(std::string(1, command)));
        if (const auto more = cable.conversation.pause(0ms); more && command == 'R')
            cable.conversation.pause(*more);
        if (command == 'R') {
            ASSERT_EQ(cable.answers.size() - answered, 1u);
        }
    }
    EXPECT_EQ(cable.answers, expected.answers);
    EXPECT_EQ(cable.chain.events, expected.chain.events);
}

TEST(RemoteBitbang, TellsWhatWasClocked) {
    for (const auto asks : {Asks::never, Asks::low, Asks::both}) {
        BitbangCable cable;
        std::string tms;
        std::string tdi;
        std::string tdo;
        cable.access.clocked = [&](bool tmsLevel, bool tdiLevel, bool tdoLevel) {
            tms += tmsLevel ? '1' : '0';
            tdi += tdiLevel ? '1' : '0';
            tdo += tdoLevel ? '1' : '0';
        };
        cable.type(walkText(asks), 60, RemoteBitbang::patience);
        cable.conversation.end();
        EXPECT_EQ(tms, walkTms);
        EXPECT_EQ(tdi, walkTdi);
        EXPECT_EQ(tdo, bitbangWalk(Asks::low).answers);
        EXPECT_EQ(cable.answers, bitbangWalk(asks).answers);
    }
}

TEST(RemoteBitbang, WaitsForTheClockOnlyUntilPinsAreUsed) {
    BitbangCable cable;
    cable.type("0426040404"
               "0R");
    EXPECT_EQ(cable.conversation.pause(0ms), RemoteBitbang::patience);
    EXPECT_EQ(cable.answers, "");
    EXPECT_FALSE(cable.conversation.pause(RemoteBitbang::patience));
    EXPECT_EQ(cable.answers.size(), 1u);
    cable.type("40R");
    cable.conversation.pause(0ms);
    EXPECT_EQ(cable.answers.size(), 2u) << "pins tell at once";
}

TEST(RemoteBitbang, LevelsOutsideOfShiftNeedNoExchange) {
    BitbangCable cable;
    EXPECT_TRUE(cable.type("R0R4R"));
    EXPECT_EQ(cable.answers, "111");
    EXPECT_EQ(cable.exchanges, 0);
}

TEST(RemoteBitbang, MakesClocksThatNobodyReads) {
    BitbangCable cable;
    cable.type("0426");
    EXPECT_EQ(cable.conversation.pause(0ms), RemoteBitbang::patience);
    EXPECT_EQ(cable.exchanges, 0);
    EXPECT_FALSE(cable.conversation.pause(RemoteBitbang::patience));
    EXPECT_EQ(cable.exchanges, 1);
}

TEST(RemoteBitbang, ResetsThroughTrst) {
    BitbangCable cable;
    cable.type(walkText(Asks::never));
    cable.conversation.pause(RemoteBitbang::patience);
    const auto events = cable.chain.events.size();
    cable.type("t04r");
    cable.conversation.pause(RemoteBitbang::patience);
    ASSERT_EQ(cable.chain.events.size(), events + 1);
    EXPECT_EQ(cable.chain.events.back(), (ChainModel::Event{ChainModel::TLR, 0}));
    EXPECT_TRUE(cable.warnings.empty());
}

TEST(RemoteBitbang, TellsOnceOfWhatItCannotDo) {
    BitbangCable cable;
    EXPECT_TRUE(cable.type("susuBbOOcc\x01\x01\n"));
    EXPECT_THAT(cable.warnings, ElementsAre(HasSubstr("SRST"), HasSubstr("'O', a command for SWD"),
                                            HasSubstr("'c', a command for SWD"), HasSubstr("0x01")));
    EXPECT_EQ(cable.answers, "");
}

TEST(RemoteBitbang, QuitEndsTheConversation) {
    BitbangCable cable;
    EXPECT_FALSE(cable.type("04Q0404R"));
}

TEST(RemoteBitbang, HandsOnLongShiftsThatNobodyReads) {
    BitbangCable cable;
    cable.type("042604"
               "04");
    std::string bits;
    for (int bit = 0; bit < 400'000; ++bit)
        bits += "0415";
    cable.type(bits);
    EXPECT_EQ(cable.exchanges, 1);
    cable.type("26260");
    cable.conversation.end();
    EXPECT_EQ(cable.chain.shiftedBits, 800'001u);
    EXPECT_EQ(cable.chain.events.size(), 2u) << "one capture and one update";
}

} // namespace
