#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <future>
#include <set>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tavo/simulator/objects/lpc.h>
#include <tests/cli/share/share_fixture.h>

/// Clients that misbehave cost the others nothing, and a device that goes away comes back.
namespace tool_test {
namespace {

namespace fs = std::filesystem;
using namespace support;
using namespace std::chrono_literals;
using testing::HasSubstr;
using testing::Not;

class ShareTroubles : public ShareTest {
protected:
    using ShareTest::ShareTest;

    void expectToServeOthers() { EXPECT_EQ(shared({"relay", "get", "power"}).output, "off\n"); }
    bool hasLock() const { return simulator.lockHolder().has_value(); }
};

TEST_F(ShareTroubles, AHalfSentRequestIsNeverForwarded) {
    const auto device = open();
    const auto whole = requestBytes(0, {lockCall(), call("power", "set", {1})});
    for (std::size_t sent = 1; sent < whole.size(); sent += 7) {
        RawClient client(share->port());
        client.send({whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(sent)});
    }
    expectToServeOthers();
    EXPECT_TRUE(callsOf("power", "set").empty());
    EXPECT_FALSE(device->value(power(device)->getGetMethod()).state);
}

TEST_F(ShareTroubles, GarbageEndsTheConnection) {
    {
        RawClient client(share->port());
        client.send(joined({u32(0), u32(1), u32(0), u32(3), u32(0xFFFFFFFF)}));
        const auto refusal = errorReply(1005, "The request is too large");
        EXPECT_EQ(client.receiveToEnd().size(), refusal.size());
    }
    RawClient client(share->port());
    client.send(bytesOf("GET / HTTP/1.1\r\nHost: lab\r\n\r\n"));
    EXPECT_FALSE(client.hasInput());
    expectToServeOthers();
}

TEST_F(ShareTroubles, AClientThatEndsSendingIsAnsweredAndClosed) {
    RawClient client(share->port());
    client.send(requestBytes(0, {callBytes(instanceId("power"), 3)}));
    client.finishSending();
    const auto reply = client.receiveToEnd();
    EXPECT_EQ(reply.size() > 20, true);
    RawClient silent(share->port());
    silent.finishSending();
    EXPECT_EQ(silent.receiveToEnd(), Bytes());
}

TEST_F(ShareTroubles, AClientThatDiesInTheMiddleOfAReplyCostsNothing) {
    for (int round = 0; round < 20; ++round) {
        RawClient client(share->port());
        const auto id = lockWith(client);
        client.send(requestBytes(id, {call("system", "uwait", u32(1000)), call("power", "get")}));
    }
    expectToServeOthers();
    EXPECT_TRUE(hasLock());
}

TEST_F(ShareTroubles, AClientThatDoesNotReadIsDropped) {
    RawClient greedy(share->port());
    const auto id = lockWith(greedy);
    // More than the system's buffers and the share's window hold.
    Bytes calls;
    constexpr std::uint32_t count = 200000;
    const auto one = call("power", "methodsVerbose");
    for (std::uint32_t i = 0; i < count; ++i)
        calls.insert(calls.end(), one.begin(), one.end());
    greedy.send(joined({u32(id), u32(count), calls}));
    ASSERT_TRUE(soon([&] { return callsOf("power", "methodsVerbose").size() > 1000; }));
    expectToServeOthers();
    EXPECT_LT(greedy.receiveToEnd().size(), std::size_t{count} * 100) << "the rest was dropped";
    expectToServeOthers();
}

TEST_F(ShareTroubles, ManyConnectionsAreBounded) {
    std::vector<std::unique_ptr<RawClient>> clients;
    for (int i = 0; i < 1100; ++i)
        clients.push_back(std::make_unique<RawClient>(share->port()));
    expectToServeOthers();
}

TEST_F(ShareTroubles, TheDeviceGoesAndComesBack) {
    const auto device = open();
    const auto lock = simulator.lockHolder();
    simulator.stop();
    EXPECT_THROW(device->call(power(device)->getGetMethod()), TAVO::NetworkError);
    EXPECT_THROW(open(), TAVO::NetworkError);
    simulator.start();
    ASSERT_TRUE(soon([&] { return shared({"relay", "get", "power"}).exitCode == 0; }));
    EXPECT_TRUE(hasLock());
    EXPECT_FALSE(device->value(power(device)->getGetMethod()).state) << "with the lock id of before";
}

TEST_F(ShareTroubles, AResetOfTheDeviceIsSurvived) {
    const auto device = open();
    device->call(device->getSystem()->getDeviceResetMethod());
    ASSERT_TRUE(soon([&] { return hasLock(); })) << "the lock is taken again";
    ASSERT_TRUE(soon([&] { return shared({"relay", "get", "power"}).exitCode == 0; }));
}

TEST_F(ShareTroubles, AReplyThatMakesNoSenseEndsItsClientOnly) {
    for (const auto& fault : {TAVO::simulator::Fault(TAVO::simulator::faults::Close{}),
                              TAVO::simulator::Fault(TAVO::simulator::faults::Cut{.bytes = 10}),
                              TAVO::simulator::Fault(TAVO::simulator::faults::Stray{.bytes = 3}),
                              TAVO::simulator::Fault(TAVO::simulator::faults::Count{.results = 7})}) {
        const auto device = open();
        const auto get = power(device)->getGetMethod();
        device->call(get);
        simulator.failNext(fault, 1);
        try {
            device->call(get);
        } catch (const TAVO::Error&) {
        }
        ASSERT_TRUE(soon([&] { return shared({"relay", "get", "power"}).exitCode == 0; }));
        EXPECT_TRUE(hasLock());
    }
}

TEST_F(ShareTroubles, ASignalFinishesTheRunningExchange) {
    for (const int signal : {SIGTERM, SIGINT}) {
        const auto device = open();
        const auto wait = device->getSystem()->getUWaitMethod(300000);
        auto call = std::async(std::launch::async, [&] { device->call(wait); });
        ASSERT_TRUE(soon([&] { return !callsOf("system", "uwait").empty(); }));
        const auto outcome = share->end(signal);
        EXPECT_EQ(outcome.exitCode, 0) << outcome.errors;
        EXPECT_NO_THROW(call.get());
        EXPECT_EQ(wait->returnCode(), 0);
        EXPECT_FALSE(hasLock());
        simulator.clearCalls();
        share = start();
    }
}

TEST_F(ShareTroubles, ItEndsWhileTheDeviceIsAway) {
    simulator.stop();
    std::this_thread::sleep_for(300ms);
    EXPECT_EQ(share->end().exitCode, 0);
}

class IdleShare : public ShareTroubles {
protected:
    IdleShare()
        : ShareTroubles({"--idle", "100ms"}) {}
};

TEST_F(IdleShare, GivesTheLockBackAndTakesItAgain) {
    ASSERT_TRUE(soon([&] { return !hasLock(); }));
    expectToServeOthers();
    EXPECT_TRUE(hasLock());
    {
        const auto device = open();
        std::this_thread::sleep_for(300ms);
        EXPECT_TRUE(hasLock()) << "a client is there";
    }
    ASSERT_TRUE(soon([&] { return !hasLock(); }));
    const auto guest =
        TAVO::DeviceFactory::buildDevice("127.0.0.1", simulator.port(), "guest", "tavo", false);
    const auto refused = shared({"relay", "get", "power"});
    EXPECT_EQ(refused.exitCode, 4);
    EXPECT_THAT(refused.errors, HasSubstr("The device is locked by guest"));
    guest->unlock();
    expectToServeOthers();
}

class LoggingShare : public ShareTroubles {
protected:
    LoggingShare()
        : ShareTroubles({"--log", (fs::path(testing::TempDir()) / "share_log.jsonl").string()}) {}
    ~LoggingShare() override { fs::remove(fs::path(testing::TempDir()) / "share_log.jsonl"); }
};

TEST_F(LoggingShare, TellsWhoCalledWhatAndWhenAndHowLong) {
    EXPECT_EQ(shared({"relay", "set", "power", "on"}).exitCode, 0);
    share->end();
    std::ifstream in(fs::path(testing::TempDir()) / "share_log.jsonl");
    std::set<std::string> events;
    bool hasCall = false;
    for (std::string line; std::getline(in, line);) {
        const auto entry = jsonOf(line);
        events.insert(entry["event"]);
        EXPECT_THAT(entry["time"].get<std::string>(), testing::MatchesRegex("20..-.*T.*[.]...Z"));
        EXPECT_THAT(line, Not(HasSubstr("\"tavo\"")));
        if (entry["event"] == "request" && entry["calls"] == nlohmann::json{"power.set"}) {
            hasCall = true;
            EXPECT_THAT(entry["peer"].get<std::string>(), HasSubstr("process "));
            EXPECT_GT(entry["milliseconds"].get<double>(), 0);
            EXPECT_EQ(entry["device"], 1);
        }
    }
    EXPECT_TRUE(hasCall);
    EXPECT_THAT(events, testing::IsSupersetOf({"opened", "connected", "request", "disconnected", "end"}));
}

} // namespace
} // namespace tool_test
