#include <chrono>
#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include <tavo/client/wire/error.h>
#include <tavo/client/wire/socket_transport.h>
#include <tests/support/failure_text.h>
#include <tests/support/raw_server.h>
#include <tests/support/transport_calls.h>

namespace {

using namespace std::chrono_literals;
using support::Bytes;
using support::failureOf;
using support::interrupted;
using support::RawConnection;
using support::RawListener;
using support::receive;
using support::ScriptedServer;
using support::send;
using support::timedOut;
using TAVO::Interrupter;
using TAVO::NetworkError;
using TAVO::SocketTransport;
using TAVO::TimeLimit;
using Clock = std::chrono::steady_clock;

constexpr TimeLimit shortLimit = 200ms;
constexpr TimeLimit longLimit = 1h;

class LimitedTransport : public testing::Test {
protected:
    std::unique_ptr<SocketTransport> connect(TimeLimit limit,
                                             std::shared_ptr<Interrupter> interrupter = nullptr) {
        return std::make_unique<SocketTransport>("127.0.0.1", listener.portText(), std::move(interrupter),
                                                 limit);
    }

    support::GuardedListener listener;
};

TEST_F(LimitedTransport, HasNoLimitUnlessItIsGivenOne) {
    SocketTransport transport("127.0.0.1", listener.portText());
    EXPECT_EQ(transport.timeLimit(), std::nullopt);
    transport.setTimeLimit(5s);
    EXPECT_EQ(transport.timeLimit(), TimeLimit(5s));
    transport.setTimeLimit(std::nullopt);
    EXPECT_EQ(transport.timeLimit(), std::nullopt);
    EXPECT_EQ(connect(7s)->timeLimit(), TimeLimit(7s));
}

TEST_F(LimitedTransport, RefusesALimitThatNoExchangeKeeps) {
    SocketTransport transport("127.0.0.1", listener.portText());
    transport.setTimeLimit(5s);
    EXPECT_EQ(failureOf<std::invalid_argument>([&] { transport.setTimeLimit(0ms); }),
              "the time limit must be at least 1 ms, not 0 ms");
    EXPECT_EQ(failureOf<std::invalid_argument>([&] { connect(-7ms); }),
              "the time limit must be at least 1 ms, not -7 ms");
    EXPECT_EQ(transport.timeLimit(), TimeLimit(5s));
}

TEST_F(LimitedTransport, EndsAReceiveFromASilentPeerAndConnectsAnewAtTheNextSend) {
    const auto transport = connect(longLimit);
    transport->setTimeLimit(shortLimit);
    auto silent = listener.accept();
    send(*transport, {1});
    EXPECT_EQ(failureOf<NetworkError>([&] { receive(*transport, 1); }), timedOut);
    EXPECT_FALSE(transport->isConnected());
    EXPECT_EQ(silent.readToEnd(), Bytes{1});

    transport->setTimeLimit(longLimit);
    send(*transport, {2});
    auto answering = listener.accept();
    answering.write(answering.read(1));
    EXPECT_EQ(receive(*transport, 1), Bytes{2});
    EXPECT_EQ(transport->connectionNumber(), 2u);
}

TEST_F(LimitedTransport, EndsAReceiveInPlaceToo) {
    const auto transport = connect(longLimit);
    transport->setTimeLimit(shortLimit);
    auto peer = listener.accept();
    send(*transport, {1});
    peer.write({1, 2, 3});
    EXPECT_EQ(failureOf<NetworkError>([&] { transport->receiveInPlace(4); }), timedOut);
}

TEST_F(LimitedTransport, TakesWhatHasArrivedInTime) {
    const auto transport = connect(longLimit);
    auto peer = listener.accept();
    send(*transport, {1});
    peer.write({1, 2, 3, 4});
    EXPECT_EQ(receive(*transport, 4), (Bytes{1, 2, 3, 4}));
}

TEST_F(LimitedTransport, EndsASendThatThePeerDoesNotTake) {
    const auto transport = connect(longLimit);
    transport->setTimeLimit(shortLimit);
    auto peer = listener.accept();
    const Bytes upload(64 * 1024 * 1024);
    EXPECT_EQ(failureOf<NetworkError>([&] { send(*transport, upload); }), timedOut);
    EXPECT_FALSE(transport->isConnected());
}

TEST_F(LimitedTransport, SendsALargeRequestWholeToAPeerThatTakesItSlowly) {
    ScriptedServer slow([](RawListener& port) {
        auto client = port.accept();
        const auto upload = support::pattern(8 * 1024 * 1024);
        Bytes taken;
        while (taken.size() < upload.size()) {
            const auto part = client.read(std::min(upload.size() - taken.size(), std::size_t{1} << 19));
            taken.insert(taken.end(), part.begin(), part.end());
            std::this_thread::sleep_for(1ms);
        }
        EXPECT_EQ(taken, upload);
        client.write({7});
    });
    SocketTransport transport("127.0.0.1", slow.portText(), nullptr, 60s);
    send(transport, support::pattern(8 * 1024 * 1024));
    EXPECT_EQ(receive(transport, 1), Bytes{7});
}

TEST_F(LimitedTransport, EndsAConnectThatNobodyAnswers) {
    support::GuardedListener full(0);
    // The system keeps the first connections waiting, and leaves those after them without an answer.
    std::vector<std::unique_ptr<SocketTransport>> waiting;
    EXPECT_EQ(failureOf<NetworkError>([&] {
                  for (int i = 0; i < 100; ++i)
                      waiting.push_back(std::make_unique<SocketTransport>("127.0.0.1", full.portText(),
                                                                          nullptr, shortLimit));
              }),
              timedOut);
}

TEST_F(LimitedTransport, ReportsAConnectThatIsRefusedAsThat) {
    listener.stop();
    const auto failure = failureOf<NetworkError>([&] { connect(longLimit); });
    EXPECT_TRUE(failure.starts_with("Could not connect to socket to: 127.0.0.1 port ")) << failure;
}

TEST_F(LimitedTransport, IsOutlivedByNoPeerThatSendsAByteNowAndThen) {
    ScriptedServer trickling([](RawListener& port) {
        auto client = port.accept();
        client.read(1);
        while (!client.hasInput(5ms))
            client.write({0});
    });
    SocketTransport transport("127.0.0.1", trickling.portText());
    transport.setTimeLimit(shortLimit);
    send(transport, {1});
    const auto begin = Clock::now();
    EXPECT_EQ(failureOf<NetworkError>([&] { receive(transport, 1'000'000); }), timedOut);
    EXPECT_LT(Clock::now() - begin, 10s);
}

TEST_F(LimitedTransport, IsOutlivedByNoPeerThatSendsWithoutEnd) {
    ScriptedServer flooding([](RawListener& port) {
        auto client = port.accept();
        client.read(1);
        const Bytes many(100'000);
        try {
            while (!client.hasInput(0ms))
                client.write(many);
        } catch (const std::exception&) { // the client has gone
        }
    });
    SocketTransport transport("127.0.0.1", flooding.portText());
    transport.setTimeLimit(shortLimit);
    send(transport, {1});
    EXPECT_EQ(failureOf<NetworkError>([&] {
                  while (true)
                      receive(transport, 10'000);
              }),
              timedOut);
}

TEST_F(LimitedTransport, GivesEachExchangeItsOwnTime) {
    const auto transport = connect(1s);
    auto peer = listener.accept();
    for (int i = 0; i < 4; ++i) {
        send(*transport, {1});
        peer.write(peer.read(1));
        std::this_thread::sleep_for(300ms);
        EXPECT_EQ(receive(*transport, 1), Bytes{1});
    }
}

TEST_F(LimitedTransport, CountsFromItsBeginningWhereItIsSetInAnExchange) {
    const auto transport = connect(std::nullopt);
    auto peer = listener.accept();
    send(*transport, {1});
    transport->setTimeLimit(longLimit);
    peer.write({9});
    EXPECT_EQ(receive(*transport, 1), Bytes{9});
    transport->setTimeLimit(shortLimit);
    EXPECT_EQ(failureOf<NetworkError>([&] { receive(*transport, 1); }), timedOut);
}

TEST_F(LimitedTransport, MayHaveALimitBeyondAllClocks) {
    const auto transport = connect(std::chrono::milliseconds::max());
    auto peer = listener.accept();
    send(*transport, {1});
    peer.write({9});
    EXPECT_EQ(receive(*transport, 1), Bytes{9});
}

TEST_F(LimitedTransport, WaitsAsLongAsItTakesOnceTheLimitIsTakenAway) {
    ScriptedServer slow([](RawListener& port) {
        auto client = port.accept();
        client.read(1);
        std::this_thread::sleep_for(2 * *shortLimit);
        client.write({9});
    });
    SocketTransport transport("127.0.0.1", slow.portText());
    transport.setTimeLimit(shortLimit);
    transport.setTimeLimit(std::nullopt);
    send(transport, {1});
    EXPECT_EQ(receive(transport, 1), Bytes{9});
}

TEST_F(LimitedTransport, CanBeInterruptedBeforeTheLimit) {
    const auto transport = connect(longLimit);
    auto peer = listener.accept();
    send(*transport, {1});
    std::thread other([&] {
        std::this_thread::sleep_for(30ms);
        transport->interrupt();
    });
    EXPECT_EQ(failureOf<NetworkError>([&] { receive(*transport, 1); }), interrupted);
    other.join();
    EXPECT_FALSE(transport->isConnected());
}

TEST_F(LimitedTransport, TellsOfTheInterruptWhereTheLimitHasComeToo) {
    const auto interrupter = std::make_shared<Interrupter>();
    const auto transport = connect(longLimit, interrupter);
    auto peer = listener.accept();
    send(*transport, {1});
    interrupter->interrupt();
    transport->setTimeLimit(1ms);
    std::this_thread::sleep_for(10ms);
    EXPECT_EQ(failureOf<NetworkError>([&] { receive(*transport, 1); }), interrupted);

    const Interrupter::Operation opening(*interrupter);
    interrupter->interrupt();
    EXPECT_EQ(failureOf<NetworkError>([&] { transport->connect(); }), interrupted);
}

TEST_F(LimitedTransport, AsksTheSystemForNothingMoreThanItsWaits) {
    const auto transport = connect(longLimit);
    auto peer = listener.accept();
    send(*transport, {1});
    peer.write({9});
    receive(*transport, 1);
    const auto before = transport->counters();
    send(*transport, {1});
    peer.write({9});
    receive(*transport, 1);
    const auto& after = transport->counters();
    EXPECT_EQ(after.connects, before.connects);
    EXPECT_EQ(after.sends, before.sends + 1);
    EXPECT_EQ(after.receives, before.receives + 1);
    EXPECT_EQ(after.polls, before.polls + 2);
}

} // namespace
