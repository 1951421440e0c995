#include <algorithm>
#include <chrono>
#include <cstdint>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <string_view>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tests/cli/jtag_serve/serve_fixture.h>
#include <tests/simulator/raw_client.h>
#include <tests/support/soon.h>

namespace tool_test {
namespace {

using support::RawClient;
using TAVO::simulator::JtagPort;
using testing::HasSubstr;
using JtagServe = ServeTest;

support::Bytes bytesOf(std::string_view text) { return {text.begin(), text.end()}; }
std::string textOf(const support::Bytes& bytes) { return {bytes.begin(), bytes.end()}; }

/// Into Shift-DR from anywhere, TCK low.
constexpr std::string_view intoShift = "26262626260426040"
                                       "40";
/// One clock in Shift-DR that reads.
constexpr std::string_view readClock = "0R40";

/// Reads the IDCODE next to TDO.
void expectIdcode(RawClient& client) {
    std::string text(intoShift);
    for (int bit = 0; bit < 32; ++bit)
        text += readClock;
    ASSERT_TRUE(client.send(bytesOf(text)));
    const auto answers = textOf(client.receive(32));
    std::uint32_t idcode = 0;
    for (std::size_t bit = 0; bit < answers.size(); ++bit)
        idcode |= (answers[bit] == '1' ? 1u : 0u) << bit;
    EXPECT_EQ(idcode, 0x2A45D0C3u) << answers;
}

support::Bytes xvcShift(std::uint32_t bits, const support::Bytes& tms) {
    support::Bytes bytes = bytesOf("shift:");
    for (unsigned place = 0; place < 32; place += 8)
        bytes.push_back(static_cast<std::uint8_t>(bits >> place));
    bytes.insert(bytes.end(), tms.begin(), tms.end());
    bytes.resize(bytes.size() + tms.size());
    return bytes;
}

TEST_F(JtagServe, NeedsOneProtocolAndAnAddress) {
    for (const auto& words : {Words{}, Words{"--xvc", "0", "--bitbang", "0"}, Words{"--xvc", "here"}}) {
        const auto outcome = tool(Words{"jtag", "serve", "--object", object} + words);
        EXPECT_EQ(outcome.exitCode, 2);
        EXPECT_NE(outcome.errors, "");
    }
    const auto first = serve("--xvc");
    const auto port = std::to_string(first->port());
    const auto second = tool({"jtag", "serve", "--object", object, "--bitbang", port});
    EXPECT_NE(second.exitCode, 0);
    EXPECT_THAT(second.errors, HasSubstr(port));
}

TEST_F(JtagServe, ServesOneClientAtATimeAndEndsAfterTheFirstIfAsked) {
    const auto cable = serve("--bitbang");
    auto first = std::make_unique<RawClient>(cable->port());
    expectIdcode(*first);
    RawClient second(cable->port());
    ASSERT_TRUE(second.send(bytesOf("R")));
    expectIdcode(*first);
    EXPECT_FALSE(second.hasInput());
    first.reset();
    EXPECT_EQ(textOf(second.receive(1)).size(), 1u);
    EXPECT_EQ(cable->end().exitCode, 0);

    const auto once = serve("--bitbang", {"--once"});
    RawClient only(once->port());
    expectIdcode(only);
    ASSERT_TRUE(only.send(bytesOf("Q")));
    EXPECT_TRUE(only.receiveToEnd().empty());
    const auto end = once->wait();
    EXPECT_EQ(end.exitCode, 0);
    EXPECT_EQ(end.errors, "");
    EXPECT_FALSE(simulator.lockHolder());
}

TEST_F(JtagServe, ClientThatGoesWithinAShiftTakesNothingWithIt) {
    const auto cable = serve("--bitbang");
    {
        RawClient client(cable->port());
        std::string text(intoShift);
        text += readClock;
        ASSERT_TRUE(client.send(bytesOf(text)));
        client.receive(1);
        // By pins, within the same shift.
        ASSERT_TRUE(client.send(bytesOf("R")));
        client.receive(1);
        ASSERT_TRUE(client.send(bytesOf(std::string(5000, 'R') + "4")));
    }
    RawClient next(cable->port());
    expectIdcode(next);
    EXPECT_EQ(simulator.lockHolder()->user, "engineer");
    EXPECT_EQ(cable->end().exitCode, 0);
    EXPECT_FALSE(simulator.lockHolder());
    for (const auto pin : {JtagPort::Pin::tck, JtagPort::Pin::tms, JtagPort::Pin::tdi})
        EXPECT_FALSE(withPort([pin](auto& port) { return port.pin(pin).driven; }));
}

TEST_F(JtagServe, ClosesTheConnectionOfAClientThatSendsNoMore) {
    const auto cable = serve("--bitbang");
    RawClient client(cable->port());
    std::string text(intoShift);
    text += readClock;
    ASSERT_TRUE(client.send(bytesOf(text)));
    client.finishSending();
    EXPECT_EQ(textOf(client.receiveToEnd()), "1");
    RawClient next(cable->port());
    expectIdcode(next);
}

TEST_F(JtagServe, MalformedInputEndsThatClientAlone) {
    const auto cable = serve("--xvc");
    RawClient client(cable->port());
    ASSERT_TRUE(client.send(bytesOf("getinfo:GET / HTTP/1.1\r\n")));
    EXPECT_EQ(textOf(client.receiveToEnd()), "xvcServer_v1.0:65536\n");
    RawClient next(cable->port());
    ASSERT_TRUE(next.send(bytesOf("getinfo:")));
    EXPECT_EQ(textOf(next.receive(21)), "xvcServer_v1.0:65536\n");
    const auto end = cable->end();
    EXPECT_EQ(end.exitCode, 0);
    EXPECT_THAT(end.errors, HasSubstr("no command of XVC"));
}

TEST_F(JtagServe, TakesALongInputWithoutReadingClient) {
    const auto cable = serve("--bitbang");
    RawClient client(cable->port());
    std::string text(intoShift);
    for (int bit = 0; bit < 1'500'000; ++bit)
        text += "41";
    text += "0R40";
    ASSERT_TRUE(client.send(bytesOf(text)));
    EXPECT_EQ(client.receive(1).size(), 1u);
}

TEST_F(JtagServe, TellsOfADeviceThatFailsAndAnswersItsClient) {
    const auto cable = serve("--xvc");
    auto client = std::make_unique<RawClient>(cable->port());
    ASSERT_TRUE(client->send(xvcShift(8, {0x5F}))); // into Run-Test/Idle, Capture-DR
    EXPECT_EQ(client->receive(1), support::Bytes{0xFF});
    withPort([](auto& port) { port.setEnabled(false); });
    for (int round = 0; round < 3; ++round) {
        ASSERT_TRUE(client->send(xvcShift(12, {0x00, 0x00})));
        EXPECT_EQ(client->receive(2), (support::Bytes{0xFF, 0x0F}));
    }
    ASSERT_TRUE(client->send(support::joined({bytesOf("settck:"), {0x10, 0x27, 0, 0}})));
    EXPECT_EQ(client->receive(4), (support::Bytes{0xE8, 0x03, 0, 0})) << "1 MHz, as found";
    client.reset();
    const auto end = cable->wait();
    EXPECT_EQ(end.exitCode, 1);
    EXPECT_THAT(end.errors, HasSubstr("the device fails, TDO is high from now on"));
    EXPECT_FALSE(simulator.lockHolder());
}

TEST_F(JtagServe, EndedByASignalStillTellsThatTheDeviceFailed) {
    const auto cable = serve("--xvc");
    RawClient client(cable->port());
    ASSERT_TRUE(client.send(xvcShift(8, {0x5F}))); // into Run-Test/Idle, Capture-DR
    EXPECT_EQ(client.receive(1), support::Bytes{0xFF});
    withPort([](auto& port) { port.setEnabled(false); });
    ASSERT_TRUE(client.send(xvcShift(12, {0x00, 0x00})));
    EXPECT_EQ(client.receive(2), (support::Bytes{0xFF, 0x0F}));
    EXPECT_EQ(cable->end().exitCode, 1);
    EXPECT_FALSE(simulator.lockHolder());
}

TEST_F(JtagServe, WritesWhatIsClockedToAFile) {
    const auto file = (folder / "clocks.vcd").string();
    const auto cable = serve("--bitbang", {"--vcd", file});
    RawClient client(cable->port());
    expectIdcode(client);
    EXPECT_EQ(cable->end().exitCode, 0);
    const std::string dump{std::istreambuf_iterator<char>(std::ifstream(file).rdbuf()), {}};
    EXPECT_THAT(dump, HasSubstr("cpu0.jtag"));
    // Ten clocks to Shift-DR and 32 in it take two steps each.
    EXPECT_THAT(dump, HasSubstr("\n#82\n"));

    const auto refused = tool({"jtag", "serve", "--object", object, "--xvc", "0", "--vcd", folder.string()});
    EXPECT_EQ(refused.exitCode, 2);
    EXPECT_THAT(refused.errors, HasSubstr(folder.string()));
}

TEST_F(JtagServe, GivesBackWhatItFound) {
    const JtagPort::ShiftOptions found{{8, {0x5A}, {0xFF}}, {3, true}, {2, true}, 6, 7, 8};
    withPort([&](auto& port) {
        port.setOptions(JtagPort::Register::instruction, found);
        port.setOptions(JtagPort::Register::data, found);
        port.setFrequency(500'000);
        port.setPin(JtagPort::Pin::tdi, {true, false});
    });
    const auto cable = serve("--bitbang");
    RawClient client(cable->port());
    ASSERT_TRUE(client.send(bytesOf("tr")));
    expectIdcode(client);
    EXPECT_EQ(cable->end().exitCode, 0);
    withPort([&](auto& port) {
        EXPECT_EQ(port.options(JtagPort::Register::instruction), found);
        EXPECT_EQ(port.options(JtagPort::Register::data), found);
        EXPECT_EQ(port.frequency(), 500'000u);
        EXPECT_EQ(port.pin(JtagPort::Pin::tdi), (JtagPort::Drive{true, false}));
        EXPECT_FALSE(port.pin(JtagPort::Pin::trst).driven);
    });
}

TEST_F(JtagServe, SignalEndsALongExchangeAndGivesBackAll) {
    const JtagPort::ShiftOptions found{{}, {3, true}, {}, 1, 0, 0};
    withPort([&](auto& port) { port.setOptions(JtagPort::Register::data, found); });
    const auto cable = serve("--xvc");
    RawClient client(cable->port());
    ASSERT_TRUE(client.send(support::joined({bytesOf("settck:"), {0x40, 0x42, 0x0F, 0x00}}))); // 1 kHz
    EXPECT_EQ(client.receive(4), (support::Bytes{0x40, 0x42, 0x0F, 0x00}));
    // Two minutes in Run-Test/Idle.
    constexpr std::uint32_t clocks = 120'000;
    ASSERT_TRUE(client.send(xvcShift(clocks, support::Bytes(clocks / 8, 0x00))));
    client.receive(clocks / 8);
    ASSERT_TRUE(support::soon([&] { return !callsOf(object, "sleep").empty(); }));
    const auto end = cable->end();
    EXPECT_EQ(end.exitCode, 0) << end.errors;
    EXPECT_FALSE(simulator.lockHolder());
    withPort([&](auto& port) {
        EXPECT_EQ(port.options(JtagPort::Register::data), found);
        EXPECT_EQ(port.frequency(), 1'000'000u);
    });
}

} // namespace
} // namespace tool_test
