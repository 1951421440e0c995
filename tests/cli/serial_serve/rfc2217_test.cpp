#include <tavo/cli/serial_serve/rfc2217.h>

#include <chrono>
#include <stdexcept>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tests/cli/serial_serve/fake_line.h>
#include <tests/support/wire_bytes.h>

namespace {

using namespace std::chrono_literals;
using support::Bytes;
using support::joined;
using TAVO::cli::Backlog;
using TAVO::cli::Parity;
using TAVO::cli::PlainSerial;
using TAVO::cli::Rfc2217;
using testing::ElementsAre;
using tool_test::FakeLine;

class ComPortClient : public testing::Test {
protected:
    void type(const Bytes& bytes) { ASSERT_TRUE(conversation.receive(bytes)); }
    Bytes answers() { return std::exchange(answers_, {}); }
    /// What the server answers to a command of the option.
    Bytes ask(const Bytes& command) {
        answers_.clear();
        EXPECT_TRUE(conversation.receive(joined({{255, 250, 44}, command, {255, 240}})));
        return answers();
    }
    static Bytes told(const Bytes& command) { return joined({{255, 250, 44}, command, {255, 240}}); }

    FakeLine line;
    Bytes answers_;
    Rfc2217 conversation{line, [this](std::span<const std::uint8_t> bytes) {
                             answers_.insert(answers_.end(), bytes.begin(), bytes.end());
                         }};
};

TEST_F(ComPortClient, IsIntroducedOnce) {
    type({255, 251, 44});
    EXPECT_EQ(answers(), joined({{255, 253, 44}, {255, 251, 0, 255, 253, 0}, told({107, 0xB0})}));
    type({255, 253, 44, 255, 251, 0, 255, 253, 0, 255, 253, 1, 255, 251, 3});
    EXPECT_EQ(answers(), (Bytes{255, 251, 44, 255, 252, 1, 255, 253, 3}));
    type({255, 252, 44, 255, 251, 44});
    EXPECT_EQ(answers(), (Bytes{255, 254, 44, 255, 253, 44})) << "the modem state is told once";
}

TEST_F(ComPortClient, SetsAndAsksForTheLine) {
    EXPECT_EQ(ask({1, 0, 0, 0, 0}), told({101, 0, 1, 0xC2, 0}));
    EXPECT_EQ(ask({1, 0, 0, 0x25, 0x80}), told({101, 0, 0, 0x25, 0x80}));
    EXPECT_EQ(ask({1, 0, 2, 0x0, 0}), told({101, 0, 0, 0x25, 0x80})) << "refused by the device";
    EXPECT_EQ(ask({1, 255, 255, 255, 255, 255, 255, 255, 255}), told({101, 0, 0, 0x25, 0x80})) << "no rate";
    EXPECT_EQ(ask({2, 0}), told({102, 8}));
    EXPECT_EQ(ask({2, 7}), told({102, 7}));
    EXPECT_EQ(ask({2, 9}), told({102, 7}));
    EXPECT_EQ(ask({3, 0}), told({103, 1}));
    EXPECT_EQ(ask({3, 2}), told({103, 2}));
    EXPECT_EQ(line.settings().parity, Parity::odd);
    EXPECT_EQ(ask({3, 3}), told({103, 3}));
    EXPECT_EQ(line.settings().parity, Parity::even);
    EXPECT_EQ(ask({3, 4}), told({103, 3})) << "mark";
    EXPECT_EQ(ask({4, 0}), told({104, 1}));
    EXPECT_EQ(ask({4, 2}), told({104, 2}));
    EXPECT_EQ(ask({4, 3}), told({104, 2})) << "1.5 stop bits";
    EXPECT_EQ(line.settings().baud, 9600);
    EXPECT_EQ(line.settings().dataBits, 7);
    EXPECT_EQ(line.settings().stopBits, 2);
}

TEST_F(ComPortClient, ControlsWhatThePortHas) {
    EXPECT_EQ(ask({5, 0}), told({105, 1}));
    EXPECT_EQ(ask({5, 2}), told({105, 2}));
    EXPECT_TRUE(line.settings().xonXoff);
    EXPECT_EQ(ask({5, 13}), told({105, 15}));
    EXPECT_EQ(ask({5, 3}), told({105, 3}));
    EXPECT_TRUE(line.settings().rtsCts);
    EXPECT_FALSE(line.settings().xonXoff);
    EXPECT_EQ(ask({5, 14}), told({105, 16})) << "not apart from the other direction";
    EXPECT_EQ(ask({5, 19}), told({105, 19}));
    EXPECT_TRUE(line.settings().dtrDsr);
    EXPECT_EQ(ask({5, 17}), told({105, 19})) << "no flow control by carrier detect";
    EXPECT_EQ(ask({5, 1}), told({105, 1}));
    EXPECT_EQ(ask({5, 9}), told({105, 8})) << "DTR stays on";
    EXPECT_EQ(ask({5, 12}), told({105, 11})) << "RTS stays on";
    line.events.clear();
    EXPECT_EQ(ask({5, 4}), told({105, 6}));
    EXPECT_EQ(ask({5, 5}), told({105, 5}));
    EXPECT_EQ(ask({5, 4}), told({105, 5}));
    EXPECT_EQ(ask({5, 5}), told({105, 5}));
    EXPECT_EQ(ask({5, 6}), told({105, 6}));
    type({255, 243});
    EXPECT_THAT(line.events, ElementsAre("break", "break"));
}

TEST_F(ComPortClient, AsksForStatesAndMasks) {
    const std::string name = "tavo serial serve, com";
    EXPECT_EQ(ask({0}), told(joined({{100}, Bytes(name.begin(), name.end())})));
    EXPECT_EQ(ask({0, 'm', 'e'}), Bytes());
    EXPECT_EQ(ask({7}), told({107, 0xB0}));
    EXPECT_EQ(ask({11, 0x1F}), told({111, 0x1F}));
    EXPECT_EQ(ask({7}), told({107, 0x10}));
    EXPECT_EQ(ask({10, 255, 255}), told({110, 255, 255})) << "escaped";
    EXPECT_EQ(ask({6}), told({106, 0}));
    EXPECT_EQ(ask({12, 0}), Bytes());
    EXPECT_EQ(ask({12, 2}), told({112, 2}));
    EXPECT_TRUE(line.events.empty());
    line.toSay = "old";
    EXPECT_EQ(ask({12, 3}), told({112, 3}));
    EXPECT_THAT(line.events, ElementsAre("drop"));
    EXPECT_EQ(line.toSay, "");
    for (const auto& nothing :
         {Bytes{}, Bytes{13, 1}, Bytes{2}, Bytes{2, 8, 8}, Bytes{1, 0, 0, 1}, Bytes{5, 99}})
        EXPECT_EQ(ask(nothing), Bytes());
    answers_.clear();
    type({255, 250, 24, 1, 255, 240, 255, 241, 255, 246});
    EXPECT_EQ(answers(), Bytes());
}

TEST_F(ComPortClient, SendsWhatStandsBeforeACommandBeforeIt) {
    type(joined({{'a', 255, 255}, told({1, 0, 0, 0x12, 0xC0}), {'b', 255, 243, 'c'}}));
    EXPECT_THAT(line.events, ElementsAre("send a\xFF", "open 4800", "send b", "break", "send c"));
}

TEST_F(ComPortClient, GetsEveryByteAndNothingWhileItWantsNone) {
    line.toSay = std::string("\x00\xFFz", 3);
    EXPECT_EQ(conversation.pause(0ms), 0ms) << "at once again";
    EXPECT_EQ(answers(), (Bytes{0, 255, 255, 'z'}));
    EXPECT_EQ(conversation.pause(0ms), 1ms);
    EXPECT_EQ(conversation.pause(1ms), 3ms);
    auto silence = 3ms;
    for (int round = 0; round < 6; ++round)
        silence = *conversation.pause(silence);
    EXPECT_EQ(conversation.pause(silence), silence + 20ms);

    ask({8});
    line.toSay = "first, ";
    EXPECT_EQ(conversation.pause(0ms), std::nullopt);
    type({'x'});
    line.toSay = "second";
    type({'y'});
    EXPECT_EQ(answers(), Bytes());
    const std::string expected = "first, second";
    EXPECT_EQ(ask({9}), Bytes(expected.begin(), expected.end()));
    EXPECT_NE(conversation.pause(0ms), std::nullopt);

    ask({8});
    for (int round = 0; round < 40; ++round) {
        line.toSay.assign(16384, static_cast<char>('A' + round % 26));
        type({'x'});
    }
    EXPECT_EQ(ask({9}).size(), Backlog::most);
}

TEST_F(ComPortClient, IsAnsweredWithWhatIsWhenTheLineHasFailed) {
    line.isWorking = false;
    EXPECT_EQ(ask({1, 0, 0, 0x25, 0x80}), told({101, 0, 1, 0xC2, 0}));
    EXPECT_EQ(ask({5, 5}), told({105, 6}));
    EXPECT_EQ(ask({12, 1}), told({112, 1}));
    type({'x'});
    EXPECT_EQ(answers(), Bytes());
    EXPECT_EQ(conversation.pause(0ms), std::nullopt);
}

TEST_F(ComPortClient, IsSentAwayForASubnegotiationWithoutAnEnd) {
    Bytes flood{'h', 'i', 255, 250, 44};
    flood.resize(100'000, 0);
    EXPECT_FALSE(conversation.receive(flood));
    EXPECT_EQ(line.sent, "hi");
    EXPECT_THAT(line.warnings, ElementsAre("the client sent a Telnet subnegotiation without an end"));
}

TEST(GoneComPortClient, SendsNoMoreBreaksAndBytes) {
    FakeLine line;
    int left = 2;
    Rfc2217 conversation(line, [&](std::span<const std::uint8_t>) {
        if (left-- == 0)
            throw std::runtime_error("gone");
    });
    EXPECT_THROW(conversation.receive(Bytes{255, 243, 'a', 255, 243, 255, 243}), std::runtime_error);
    EXPECT_THAT(line.events, ElementsAre("break", "send a"));
}

TEST(PlainSerialClient, SendsAndGetsBytesAsTheyAre) {
    FakeLine line;
    std::string told;
    PlainSerial conversation(
        line, [&](std::span<const std::uint8_t> bytes) { told.append(bytes.begin(), bytes.end()); });
    line.toSay = "\xFF\xF3";
    EXPECT_TRUE(conversation.receive(Bytes(10'000, 255)));
    EXPECT_EQ(line.sent, std::string(10'000, '\xFF'));
    EXPECT_EQ(line.events.size(), 3u) << "in parts, so that the board is heard meanwhile";
    EXPECT_EQ(told, "\xFF\xF3");
}

} // namespace
