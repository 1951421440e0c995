#include <chrono>
#include <memory>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include <tavo/client/wire/error.h>
#include <tavo/client/wire/socket_transport.h>
#include <tests/support/failure_text.h>
#include <tests/support/raw_server.h>

namespace {

using namespace std::chrono_literals;

constexpr auto interruptedText = "Call to device interrupted.";

struct AskedTransport {
    support::GuardedListener listener;
    std::shared_ptr<TAVO::Interrupter> interrupter = std::make_shared<TAVO::Interrupter>();
    TAVO::SocketTransport transport{"127.0.0.1", listener.portText(), interrupter};
    std::uint8_t byte = 1;
};

TEST(EndWhen, EndsAReceiveWhenTheFunctionSaysSo) {
    AskedTransport asked;
    auto peer = asked.listener.accept();
    int questions = 0;
    asked.interrupter->endWhen([&] { return ++questions == 3; });
    asked.transport.sendAll(&asked.byte, 1);
    EXPECT_EQ(support::failureOf<TAVO::NetworkError>([&] { asked.transport.receiveAll(&asked.byte, 1); }),
              interruptedText);
    EXPECT_EQ(questions, 3);
    EXPECT_FALSE(asked.transport.isConnected());
}

TEST(EndWhen, EndsASendThatThePeerDoesNotTake) {
    AskedTransport asked;
    auto peer = asked.listener.accept();
    asked.interrupter->endWhen([] { return true; });
    const std::vector<std::uint8_t> large(std::size_t{64} << 20);
    EXPECT_EQ(
        support::failureOf<TAVO::NetworkError>([&] { asked.transport.sendAll(large.data(), large.size()); }),
        interruptedText);
}

TEST(EndWhen, LeavesACallAloneWhileTheFunctionSaysNo) {
    support::ScriptedServer slow([](support::RawListener& port) {
        auto client = port.accept();
        client.read(1);
        std::this_thread::sleep_for(200ms);
        client.write({9});
    });
    const auto interrupter = std::make_shared<TAVO::Interrupter>();
    TAVO::SocketTransport transport("127.0.0.1", slow.portText(), interrupter);
    int questions = 0;
    interrupter->endWhen([&] { return ++questions < 0; });
    std::uint8_t byte = 1;
    transport.sendAll(&byte, 1);
    transport.receiveAll(&byte, 1);
    EXPECT_EQ(byte, 9);
    EXPECT_GT(questions, 0);
}

TEST(EndWhen, KeepsTheTimeLimit) {
    AskedTransport asked;
    auto peer = asked.listener.accept();
    asked.interrupter->endWhen([] { return false; });
    asked.transport.setTimeLimit(120ms);
    asked.transport.sendAll(&asked.byte, 1);
    EXPECT_EQ(support::failureOf<TAVO::NetworkError>([&] { asked.transport.receiveAll(&asked.byte, 1); }),
              "Call to device timed out.");
}

TEST(EndWhen, AsksNobodyAfterAnEmptyFunction) {
    AskedTransport asked;
    auto peer = asked.listener.accept();
    asked.interrupter->endWhen([] { return true; });
    asked.interrupter->endWhen({});
    asked.transport.sendAll(&asked.byte, 1);
    peer.write({7});
    asked.transport.receiveAll(&asked.byte, 1);
    EXPECT_EQ(asked.byte, 7);
}

TEST(EndWhen, EndsAConnectAndTheNextOneWorks) {
    AskedTransport asked;
    bool ends = true;
    asked.interrupter->endWhen([&] { return ends; });
    EXPECT_EQ(support::failureOf<TAVO::NetworkError>([&] { asked.transport.connect(); }), interruptedText);
    ends = false;
    asked.transport.connect();
    EXPECT_TRUE(asked.transport.isConnected());
}

} // namespace
