#include <tavo/cli/jtag_serve/xvc.h>

#include <string>
#include <string_view>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tests/cli/jtag_serve/cable.h>

namespace {

using namespace std::chrono_literals;
using namespace std::string_literals;
using jtag_test::ChainModel;
using TAVO::cli::Xvc;
using testing::ElementsAre;
using testing::HasSubstr;
using XvcCable = tool_test::Cable<Xvc>;

std::string number(std::uint32_t value) {
    std::string bytes;
    for (unsigned shift = 0; shift < 32; shift += 8)
        bytes += static_cast<char>(value >> shift & 0xFF);
    return bytes;
}

/// Levels as text of 0 and 1, the first clock first, packed.
std::string packed(std::string_view levels) {
    std::string bytes((levels.size() + 7) / 8, '\0');
    for (std::size_t bit = 0; bit < levels.size(); ++bit)
        bytes[bit / 8] = static_cast<char>(bytes[bit / 8] | (levels[bit] == '1' ? 1 << bit % 8 : 0));
    return bytes;
}

std::string shiftText(std::string_view tms, std::string_view tdi) {
    return "shift:" + number(static_cast<std::uint32_t>(tms.size())) + packed(tms) + packed(tdi);
}

std::string answerOf(ChainModel& chain, std::string_view tms, std::string_view tdi) {
    std::string levels;
    for (std::size_t clock = 0; clock < tms.size(); ++clock)
        levels += chain.clock(tms[clock] == '1', tdi[clock] == '1') ? '1' : '0';
    return packed(levels);
}

struct XvcClocks {
    std::string_view tms;
    std::string_view tdi;
};

constexpr XvcClocks xvcWalk[]{
    {"0110", "0000"},
    {"0000001", "0110100"},
    {"10", "00"},
    {"1000000000", "0010110110"},
    {"0000000000000", "1011101000110"},
    {"1", "1"},
    {"011", "000"},
    {"0000000", "0000000"},
    {"10100011", "00010110"},
};

TEST(Xvc, AnswersTheSameWhereverTheInputIsCut) {
    std::string text = "getinfo:";
    std::string expected = "xvcServer_v1.0:65536\n";
    ChainModel straight;
    for (const auto& [tms, tdi] : xvcWalk) {
        text += shiftText(tms, tdi);
        expected += answerOf(straight, tms, tdi);
    }
    for (std::size_t cut = 0; cut <= text.size(); ++cut)
        for (const auto silence : {0ms, Xvc::patience}) {
            XvcCable cable;
            ASSERT_TRUE(cable.type(text, cut, silence)) << "cut " << cut;
            cable.conversation.end();
            ASSERT_EQ(cable.answers, expected) << "cut " << cut;
            ASSERT_EQ(cable.chain.events, straight.events) << "cut " << cut;
            ASSERT_TRUE(cable.warnings.empty());
        }
}

TEST(Xvc, MakesOneExchangeAtMostForAShift) {
    XvcCable cable;
    cable.type(shiftText("0100", "0000"));
    EXPECT_EQ(cable.answers, packed("1111")) << "at once";
    EXPECT_EQ(cable.exchanges, 0);
    cable.type(shiftText("000000000001"
                         "10"
                         "000"
                         "1100"
                         "00",
                         std::string(23, '1')));
    EXPECT_EQ(cable.exchanges, 1);
    EXPECT_EQ(cable.answers.size(), 1u + 3u);
    cable.type(shiftText("0", "0"));
    EXPECT_EQ(cable.exchanges, 2);
}

TEST(Xvc, MakesWhatWasAnsweredBeforeLong) {
    XvcCable cable;
    cable.type(shiftText("0000", "0000"));
    EXPECT_EQ(cable.conversation.pause(0ms), Xvc::patience);
    EXPECT_FALSE(cable.conversation.pause(Xvc::patience));
    EXPECT_EQ(cable.exchanges, 1);
    EXPECT_EQ(cable.chain.state(), ChainModel::RTI + 0u);
}

TEST(Xvc, TakesShiftsOfEightTimesWhatIsAnnounced) {
    XvcCable cable;
    cable.type(shiftText("0100", "0000"));
    const std::string most(Xvc::announced * 8, '0');
    EXPECT_TRUE(cable.type(shiftText(most, most)));
    EXPECT_EQ(cable.exchanges, 1);
    EXPECT_EQ(cable.answers.size(), 1 + Xvc::announced);
    EXPECT_TRUE(cable.type("shift:" + number(0)));
    EXPECT_FALSE(cable.type("shift:" + number(Xvc::announced * 8 + 1)));
    EXPECT_THAT(cable.warnings, ElementsAre(HasSubstr("524289 bits")));
}

TEST(Xvc, TellsThePeriodThatIsSet) {
    XvcCable cable;
    const auto text = "settck:" + number(1000);
    EXPECT_TRUE(cable.type(text.substr(0, 9)));
    EXPECT_EQ(cable.answers, "");
    EXPECT_TRUE(cable.type(text.substr(9)));
    EXPECT_EQ(cable.frequency, 666'666);
    EXPECT_EQ(cable.answers, number(1501)) << "rounded up";
    EXPECT_TRUE(cable.type("settck:" + number(0)));
    EXPECT_TRUE(cable.type("settck:" + number(0xFFFFFFFF)));
}

TEST(Xvc, EndsWithWhoeverSaysSomethingElse) {
    for (const auto& text : {"hello"s, "getinfo;"s, "set:"s, "shifty"s, "\0"s, "S"s}) {
        XvcCable cable;
        EXPECT_FALSE(cable.type(text)) << text;
        EXPECT_THAT(cable.warnings, ElementsAre(HasSubstr("no command of XVC")));
    }
}

} // namespace
