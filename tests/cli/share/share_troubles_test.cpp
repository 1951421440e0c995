#include <algorithm>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <future>
#include <set>
#include <string>

#include <sys/resource.h>

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

    /// A request whose reply of 24 MB is more than the system's buffers and the share's window hold.
    Bytes largeRequest(std::uint32_t lockId) {
        RawClient client(share->port());
        const Bytes reservation = joined({{0}, text("engineer"), text(std::string(60000, 'x'))});
        client.send(requestBytes(lockId, {call("power", "reserve", reservation)}));
        const auto done = replyWith({u32(0)});
        EXPECT_EQ(client.receive(done.size()), done);
        const auto one = call("power", "available");
        Bytes calls;
        for (std::uint32_t i = 0; i < largeCount; ++i)
            calls.insert(calls.end(), one.begin(), one.end());
        return joined({u32(lockId), u32(largeCount), calls});
    }
    static constexpr std::uint32_t largeCount = 400;

    void expectToServeOthers() { EXPECT_EQ(shared({"relay", "get", "power"}).output, "off\n"); }
    bool hasLock() const { return simulator.lockHolder().has_value(); }
};

/// Gives the device no time when a client has gone.
class HungShare : public ShareTroubles {
protected:
    HungShare()
        : ShareTroubles({"--timeout", "300ms"}) {}
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
    const auto refusal =
        joined({u32(0), block(joined({u32(0), u32(1005), text("The request is too large")})), u32(0)});
    for (const auto& garbage : {joined({u32(0), u32(1), u32(0), u32(3), u32(0xFFFFFFFF)}),
                                bytesOf("GET / HTTP/1.1\r\nHost: lab\r\n\r\n")}) {
        RawClient client(share->port());
        client.send(garbage);
        EXPECT_EQ(client.receiveToEnd(), refusal);
    }
    expectToServeOthers();
}

TEST_F(ShareTroubles, AStrangerCannotKeepTheShareBusy) {
    const auto count = 100000u;
    Bytes calls;
    const auto one = callBytes(instanceId("power"), 3);
    for (std::uint32_t i = 0; i < count; ++i)
        calls.insert(calls.end(), one.begin(), one.end());
    RawClient client(share->port());
    client.send(joined({u32(0), u32(count), calls}));
    const auto refusal =
        joined({u32(0), block(joined({u32(0), u32(1005), text("The request is too large")})), u32(0)});
    EXPECT_EQ(client.receive(refusal.size()), refusal);
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
    for (int round = 0; round < 5; ++round) {
        RawClient client(share->port());
        client.send(largeRequest(lockWith(client)));
        EXPECT_GE(client.receive(300000).size(), 300000u);
    }
    const auto lock = simulator.lockHolder();
    const auto connections = simulator.connectionCount();
    expectToServeOthers();
    EXPECT_EQ(simulator.lockHolder(), lock);
    EXPECT_EQ(simulator.connectionCount(), connections) << "the share has not lost the device";
}

TEST_F(HungShare, AClientThatDiesDuringACallThatHangsFreesTheOthers) {
    {
        const auto device = open("engineer", "tavo", {.timeLimit = 200ms});
        const auto get = power(device)->getGetMethod();
        device->call(get);
        simulator.failNext(TAVO::simulator::faults::Silent{}, 1);
        EXPECT_THROW(device->call(get), TAVO::NetworkError);
    }
    ASSERT_TRUE(soon([&] { return shared({"relay", "get", "power"}).exitCode == 0; }));
    EXPECT_TRUE(hasLock());
}

TEST_F(ShareTroubles, AClientThatDoesNotReadIsDropped) {
    RawClient greedy(share->port());
    greedy.send(largeRequest(lockWith(greedy)));
    ASSERT_TRUE(soon([&] { return !callsOf("power", "available").empty(); }));
    expectToServeOthers();
    const auto got = greedy.receiveToEnd().size();
    EXPECT_GT(got, 100000u);
    EXPECT_LT(got, std::size_t{largeCount} * 60000) << "the rest was dropped";
    expectToServeOthers();
}

TEST_F(ShareTroubles, ManyConnectionsAreBounded) {
    rlimit before{};
    ::getrlimit(RLIMIT_NOFILE, &before);
    const rlimit enough{std::max<rlim_t>(before.rlim_cur, 2000), before.rlim_max};
    if (before.rlim_max < 2000 || ::setrlimit(RLIMIT_NOFILE, &enough) != 0)
        GTEST_SKIP() << "no more than " << before.rlim_max << " descriptors are allowed";
    std::vector<std::unique_ptr<RawClient>> clients;
    for (int i = 0; i < 1100; ++i)
        clients.push_back(std::make_unique<RawClient>(share->port()));
    expectToServeOthers();
    EXPECT_TRUE(clients.front()->hasEnded()) << "the longest idle one made room";
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
    const auto before = simulator.lockHolder();
    device->call(device->getSystem()->getDeviceResetMethod());
    ASSERT_TRUE(soon([&] { return hasLock() && simulator.lockHolder() != before; }));
    ASSERT_TRUE(soon([&] { return shared({"relay", "get", "power"}).exitCode == 0; }));
}

TEST_F(ShareTroubles, AReplyThatMakesNoSenseEndsItsClientOnly) {
    using namespace TAVO::simulator;
    for (const auto& fault :
         {Fault(faults::Close{}), Fault(faults::Cut{.bytes = 10}), Fault(faults::Count{.results = 7})}) {
        const auto device = open();
        const auto get = power(device)->getGetMethod();
        device->call(get);
        simulator.failNext(fault, 1);
        EXPECT_THROW(device->call(get), TAVO::NetworkError);
        ASSERT_TRUE(soon([&] { return shared({"relay", "get", "power"}).exitCode == 0; }));
        EXPECT_TRUE(hasLock());
    }
}

TEST_F(ShareTroubles, BytesThatNobodyAskedForCostTheConnection) {
    const auto device = open();
    const auto connections = simulator.connectionCount();
    simulator.failNext(TAVO::simulator::faults::Stray{.bytes = 3}, 1);
    try {
        device->call(power(device)->getGetMethod());
    } catch (const TAVO::NetworkError&) { // the bytes may come together with the reply
    }
    ASSERT_TRUE(soon([&] { return simulator.connectionCount() > connections; }));
    ASSERT_TRUE(soon([&] { return shared({"relay", "get", "power"}).exitCode == 0; }));
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

TEST_F(ShareTroubles, ASignalFinishesALargeReply) {
    RawClient client(share->port());
    client.send(largeRequest(lockWith(client)));
    auto reply = client.receive(100000);
    share->process().signal(SIGTERM);
    const auto rest = client.receiveToEnd();
    reply.insert(reply.end(), rest.begin(), rest.end());
    ASSERT_GT(reply.size(), 20u);
    const auto size = std::size_t{reply[12]} << 24 | std::size_t{reply[13]} << 16 |
                      std::size_t{reply[14]} << 8 | std::size_t{reply[15]};
    EXPECT_EQ(reply.size(), 12 + largeCount * (4 + size));
    const auto outcome = share->process().wait();
    EXPECT_EQ(outcome.exitCode, 0) << outcome.errors;
    EXPECT_FALSE(hasLock());
}

TEST_F(ShareTroubles, ItEndsOverTheConnectionThatItHas) {
    const auto connections = simulator.connectionCount();
    share->end();
    EXPECT_EQ(simulator.connectionCount(), connections);
    EXPECT_FALSE(hasLock());
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
    for (int round = 0; round < 5; ++round) {
        ASSERT_TRUE(soon([&] { return !hasLock(); }));
        const auto device = open();
        EXPECT_TRUE(hasLock()) << "whoever shows user and password finds the lock taken";
        std::this_thread::sleep_for(150ms);
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

TEST_F(IdleShare, ServesThoseWhoComeDuringTheRelease) {
    for (int round = 0; round < 30; ++round) {
        expectToServeOthers();
        std::this_thread::sleep_for(std::chrono::milliseconds(90 + round));
    }
}

TEST_F(ShareTroubles, TheLogTellsWhoCalledWhatAndWhenAndHowLong) {
    share->end();
    share = start({"--log", (folder / "log.jsonl").string()});
    EXPECT_EQ(shared({"relay", "set", "power", "on"}).exitCode, 0);
    share->end();
    std::ifstream in(folder / "log.jsonl");
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

TEST_F(ShareTroubles, TheLogTellsTheLastRequestToo) {
    share->end();
    share = start({"--log", (folder / "log.jsonl").string()});
    const auto device = open();
    const auto wait = device->getSystem()->getUWaitMethod(300000);
    auto call = std::async(std::launch::async, [&] { device->call(wait); });
    ASSERT_TRUE(soon([&] { return !callsOf("system", "uwait").empty(); }));
    share->end();
    call.get();
    std::ifstream in(folder / "log.jsonl");
    int told = 0;
    for (std::string line; std::getline(in, line);)
        if (const auto entry = jsonOf(line);
            entry["event"] == "request" && entry["calls"] == nlohmann::json{"system.uwait"}) {
            ++told;
            EXPECT_FALSE(entry.contains("lost"));
        }
    EXPECT_EQ(told, 1);
}

} // namespace
} // namespace tool_test
