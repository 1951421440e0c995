#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tavo/client/hwdebug/lpc_rom_emulation.h>
#include <tests/cli/rom_serve/serve_fixture.h>
#include <tests/simulator/raw_client.h>
#include <tests/support/soon.h>

namespace tool_test {
namespace {

using support::RawClient;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using RomServe = RomServeTest;

constexpr std::uint32_t romMebi = 1024 * 1024;
const FlashBytes romAck{0x06};
const FlashBytes romNak{0x15};
const FlashBytes letGo{0x15, 0x00};

/// The answer to that, which has so many bytes.
FlashBytes askRom(RawClient& client, const FlashBytes& bytes, std::size_t length = 1) {
    EXPECT_TRUE(client.send(bytes));
    return client.receive(length);
}

/// With writing enabled before.
void changeRom(RawClient& client, const FlashBytes& command) {
    EXPECT_EQ(askRom(client, spi({0x06}) + spi(command), 2), romAck + romAck);
}

void expectChip(RawClient& client) {
    EXPECT_EQ(askRom(client, spi({0x9F}, 3), 4), (FlashBytes{0x06, 0xC2, 0x25, 0x37}));
}

TEST_F(RomServe, NeedsAnAddressAndAChip) {
    EXPECT_EQ(tool({"rom", "serve"}).exitCode, 2);
    EXPECT_EQ(tool({"rom", "serve", "here"}).exitCode, 2);
    const auto unknown = tool({"rom", "serve", "0", "--chip", "W25"});
    EXPECT_EQ(unknown.exitCode, 2);
    for (const auto* name : {"W25", "GD25Q40", "MX25U8032E", "MX25U12835F"})
        EXPECT_THAT(unknown.errors, HasSubstr(name));
    const auto large = tool({"rom", "serve", "0", "--chip", "MX25U12835F"});
    EXPECT_EQ(large.exitCode, 2);
    EXPECT_THAT(large.errors, HasSubstr("16777216 bytes, more than the ROM's 8388608"));
    const auto first = serve({"--chip", "GD25Q64"});
    RawClient client(first->port());
    EXPECT_EQ(askRom(client, spi({0x9F}, 3), 4), (FlashBytes{0x06, 0xC8, 0x40, 0x17}));
    const auto port = std::to_string(first->port());
    const auto second = tool({"rom", "serve", port});
    EXPECT_NE(second.exitCode, 0);
    EXPECT_THAT(second.errors, HasSubstr(port));
}

TEST_F(RomServe, ServesOneClientAtATimeAndEndsAfterTheFirstIfAsked) {
    const auto server = serve();
    auto first = std::make_unique<RawClient>(server->port());
    expectChip(*first);
    RawClient second(server->port());
    ASSERT_TRUE(second.send({0x00}));
    expectChip(*first);
    EXPECT_FALSE(second.hasInput());
    first.reset();
    EXPECT_EQ(second.receive(1), romAck);
    const auto stopped = server->end();
    EXPECT_EQ(stopped.exitCode, 0);
    EXPECT_EQ(stopped.errors, "");

    const auto once = serve({"--once"});
    auto only = std::make_unique<RawClient>(once->port());
    expectChip(*only);
    only.reset();
    const auto end = once->wait();
    EXPECT_EQ(end.exitCode, 0);
    EXPECT_EQ(end.errors, "");
    EXPECT_FALSE(simulator.lockHolder());
    EXPECT_THAT(callsOf("rom", "sramGet"), testing::IsEmpty()) << "nothing was asked of the memory";
}

TEST_F(RomServe, WritesBeforeTheLastAnswerWithTheRomOff) {
    withRom([](auto& rom) { rom.write(0, FlashBytes(3 * romMebi, 0x3C)); });
    setEnabled(true);
    const auto server = serve();
    RawClient client(server->port());
    EXPECT_EQ(askRom(client, spi(at(0x03, 2 * romMebi), 2), 3), (FlashBytes{0x06, 0x3C, 0x3C}));
    EXPECT_EQ(exchangesWith("sramGet"), 1u);
    simulator.clearCalls();
    ASSERT_TRUE(client.send(spi({0x06}) + spi(at(0x20, 2 * romMebi)) + spi({0x06}) +
                            spi(at(0x02, 2 * romMebi + 0xFF, {1, 2})) + letGo));
    EXPECT_EQ(client.receive(5), FlashBytes(5, 0x06));
    EXPECT_EQ(memory(2 * romMebi - 1, 3), (FlashBytes{0x3C, 2, 0xFF}));
    EXPECT_EQ(memory(2 * romMebi + 0xFE, 3), (FlashBytes{0xFF, 1, 0xFF}));
    EXPECT_EQ(memory(2 * romMebi + 4096, 1), FlashBytes{0x3C});
    std::vector<std::string> order;
    std::set<std::uint64_t> requests;
    for (const auto& call : simulator.calls()) {
        order.push_back(call.method + " " + (call.method == "enableSet" ? call.parameters.toString() : ""));
        if (call.method.starts_with("sram"))
            requests.insert(call.request);
    }
    EXPECT_THAT(order,
                ElementsAre("enableSet enable=false", "sramSet ", "sramGet ", "enableSet enable=true"));
    EXPECT_EQ(requests.size(), 1u) << "written and read back at once";
    EXPECT_TRUE(isEnabled());
    EXPECT_EQ(server->end().exitCode, 0);
}

TEST_F(RomServe, WritesInAPauseAndLeavesTheRomOffBehindAClientThatIsCutOff) {
    const auto server = serve({"--enable"});
    auto client = std::make_unique<RawClient>(server->port());
    changeRom(*client, at(0x02, 0, {0x11}));
    EXPECT_TRUE(support::soon([&] { return memory(0, 1) == FlashBytes{0x11}; })) << "after a pause";
    changeRom(*client, at(0x02, 0x7FFFFF, {0x22}));
    // In the middle of a command.
    ASSERT_TRUE(client->send({0x13, 0xFF, 0xFF}));
    client.reset();
    {
        RawClient reader(server->port());
        EXPECT_EQ(askRom(reader, spi(at(0x03, 0x7FFFFF), 1), 2), (FlashBytes{0x06, 0x22}));
        EXPECT_EQ(memory(0x7FFFFF, 1), FlashBytes{0x22}) << "behind the client";
        EXPECT_EQ(askRom(reader, letGo), romAck);
        EXPECT_FALSE(isEnabled());
        changeRom(reader, at(0x02, 1, {0x33}));
        EXPECT_EQ(askRom(reader, letGo), romAck);
        EXPECT_FALSE(isEnabled()) << "nobody has looked at what the client left";
        for (const std::uint32_t block : {0u, 0x7FF000u})
            EXPECT_EQ(askRom(reader, spi(at(0x03, block), 4096), 4097).size(), 4097u);
        EXPECT_EQ(askRom(reader, letGo), romAck);
        EXPECT_TRUE(isEnabled());
    }
    const auto end = server->end();
    EXPECT_EQ(end.exitCode, 0);
    EXPECT_THAT(end.errors, HasSubstr("the client went before it let the chip go: at least 8192 of 8192 "
                                      "changed bytes were written; the ROM is off"));
    EXPECT_THAT(end.errors, HasSubstr("the ROM stays off: a client went in the middle of its work"));
}

TEST_F(RomServe, SignalWithinAClientsWorkEndsAsASignalWithTheRomOff) {
    setEnabled(true);
    const auto server = serve();
    RawClient client(server->port());
    changeRom(client, at(0x02, 0, {0x11}));
    ASSERT_TRUE(support::soon([&] { return memory(0, 1) == FlashBytes{0x11}; }));
    EXPECT_EQ(askRom(client, {0x00}), romAck) << "the tool knows it too";
    const auto end = server->end();
    EXPECT_EQ(end.signal, SIGTERM);
    EXPECT_THAT(end.errors, HasSubstr("at least 4096 of 4096 changed bytes were written; the ROM is off"));
    EXPECT_FALSE(isEnabled());
    EXPECT_FALSE(simulator.lockHolder());
}

TEST_F(RomServe, SwitchesTheRomOffThoughAnotherHasSwitchedItOnMeanwhile) {
    const auto server = serve();
    setEnabled(true);
    RawClient client(server->port());
    changeRom(client, at(0x02, 0, {0x11}));
    ASSERT_TRUE(support::soon([&] { return memory(0, 1) == FlashBytes{0x11}; }));
    EXPECT_FALSE(isEnabled());
    EXPECT_EQ(askRom(client, letGo), romAck);
    EXPECT_EQ(server->end().exitCode, 0);
}

TEST_F(RomServe, EnablesWritingForOneClientOnly) {
    const auto server = serve();
    {
        RawClient client(server->port());
        EXPECT_EQ(askRom(client, spi({0x06})), romAck);
    }
    RawClient next(server->port());
    EXPECT_EQ(askRom(next, spi({0x05}, 1), 2), (FlashBytes{0x06, 0x00}));
    EXPECT_EQ(server->end().exitCode, 0);
}

TEST_F(RomServe, ErasesAgainAndAgainWithoutKeepingOthersWaiting) {
    const auto server = serve();
    {
        RawClient flood(server->port());
        const auto erase = spi({0x06}) + spi({0xC7});
        FlashBytes many;
        for (int i = 0; i < 20'000; ++i)
            many.insert(many.end(), erase.begin(), erase.end());
        ASSERT_TRUE(flood.send(many));
    }
    RawClient next(server->port());
    EXPECT_EQ(askRom(next, {0x00}), romAck);
    EXPECT_EQ(server->end().exitCode, 0);
}

TEST_F(RomServe, TellsOfADeviceThatFailedEvenIfItIsStopped) {
    const auto server = serve();
    RawClient client(server->port());
    EXPECT_EQ(askRom(client, {0x00}), romAck);
    simulator.failNext(TAVO::simulator::faults::Close{});
    EXPECT_EQ(askRom(client, spi(at(0x03, 0), 1)), romNak);
    EXPECT_EQ(server->end().exitCode, 5);
}

TEST_F(RomServe, EndsTheConnectionOfAClientThatSendsNoMore) {
    const auto server = serve();
    RawClient client(server->port());
    ASSERT_TRUE(client.send(spi({0x06}) + spi(at(0x02, 0, {0x11}))));
    client.finishSending();
    EXPECT_EQ(client.receiveToEnd(), romAck + romAck);
    RawClient next(server->port());
    expectChip(next);
    EXPECT_EQ(memory(0, 1), FlashBytes{0x11});
}

TEST_F(RomServe, RefusesNonsenseAndServesOn) {
    const auto server = serve();
    {
        RawClient client(server->port());
        const std::string request = "GET / HTTP/1.1\r\n";
        EXPECT_EQ(askRom(client, {request.begin(), request.end()}, request.size()),
                  FlashBytes(request.size(), 0x15));
    }
    RawClient next(server->port());
    expectChip(next);
}

/// Takes everything but a byte.
class ForgetfulRom : public TAVO::simulator::LpcRomEmulation {
public:
    explicit ForgetfulRom(std::shared_ptr<TAVO::simulator::Board> board)
        : LpcRomEmulation(std::move(board)) {
        on(TAVO::TAVOXTranscode::lpcRomEmulation_v1_0::sramSet,
           [this](const TAVO::dto::lpcRomEmulation::SramSetRequest& request) {
               auto data = request.data;
               data.at(9) = 0x99;
               rom().write(request.offset, data);
           });
    }
};

TEST(RomServeDifference, IsRefusedAndEndsTheServer) {
    class Tool : public SimulatedTool {
    public:
        Tool()
            : SimulatedTool("bare") {
            simulator.inspect([](auto& appliance) {
                appliance.template add<ForgetfulRom>("rom", appliance.board()).rom().setEnabled(true);
            });
        }
        void TestBody() override {
            CableProcess server(setupOf({"rom", "serve", "0"}));
            auto client = std::make_unique<RawClient>(server.port());
            changeRom(*client, at(0x02, 0x3000, {0x11}));
            EXPECT_EQ(askRom(*client, letGo), romNak);
            for (int round = 0; round < 3; ++round)
                EXPECT_EQ(askRom(*client, spi(at(0x03, 0), 1000)), romNak) << "as long as it stays";
            EXPECT_EQ(askRom(*client, {0x10}, 2), romNak + romAck);
            EXPECT_EQ(askRom(*client, letGo), romNak);
            client.reset();
            const auto end = server.wait();
            EXPECT_EQ(end.exitCode, 1);
            EXPECT_THAT(end.errors, HasSubstr("every operation is refused from now on: first difference at "
                                              "offset 0x3009: the device has 0x99, 0xff was written"));
            EXPECT_THAT(end.errors,
                        HasSubstr("at least 0 of 4096 changed bytes were written; the ROM is off"));
            EXPECT_FALSE(simulator.inspect(
                [](auto& appliance) { return appliance.template get<ForgetfulRom>("rom").rom().enabled(); }));
            EXPECT_FALSE(simulator.lockHolder());
        }
    };
    Tool().TestBody();
}

TEST_F(RomServe, TellsOfADeviceThatFailsAndRefusesItsClient) {
    const auto server = serve();
    auto client = std::make_unique<RawClient>(server->port());
    expectChip(*client);
    simulator.failNext(TAVO::simulator::faults::Close{});
    EXPECT_EQ(askRom(*client, spi(at(0x03, 0), 1)), romNak);
    EXPECT_EQ(askRom(*client, spi({0x9F}, 3)), romNak);
    EXPECT_EQ(askRom(*client, {0x00}), romAck);
    client.reset();
    const auto end = server->wait();
    EXPECT_EQ(end.exitCode, 5);
    EXPECT_THAT(end.errors, HasSubstr("every operation is refused from now on"));
    EXPECT_THAT(end.errors, Not(HasSubstr("were written"))) << "nothing was";
}

} // namespace
} // namespace tool_test
