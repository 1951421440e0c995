#include <string>

#include <gtest/gtest.h>

#include <tavo/client/wire/error.h>
#include <tavo/client/wire/socket_transport.h>
#include <tests/support/failure_text.h>
#include <tests/support/raw_server.h>
#include <tests/support/system_error.h>
#include <tests/support/transport_calls.h>

namespace {

using support::Bytes;
using support::bytesOf;
using support::failureOf;
using support::GuardedListener;
using support::pattern;
using support::RawConnection;
using support::RawListener;
using support::receive;
using support::ScriptedServer;
using support::sendText;
using support::SystemError;
using TAVO::NetworkError;
using TAVO::SocketTransport;

const std::string connectionReset =
    "Connection to device closed unexpectedly." + support::errorCodeText(SystemError::connectionReset);

std::string refusal(const RawListener& listener) {
    return "Could not connect to socket to: 127.0.0.1 port " + listener.portText() +
           support::errorCodeText(SystemError::connectionRefused);
}

TEST(SocketTransportFailure, NamesHostPortAndSystemTextOfAPortThatRefuses) {
    GuardedListener listener;
    listener.stop();
    EXPECT_EQ(failureOf<NetworkError>([&] { SocketTransport("127.0.0.1", listener.portText()); }),
              refusal(listener));
}

TEST(SocketTransportFailure, ReconnectsSilentlyWhenThePeerHasClosed) {
    GuardedListener listener;
    SocketTransport transport("127.0.0.1", listener.portText());
    listener.accept().close();

    sendText(transport, "question");
    auto second = listener.accept();
    EXPECT_EQ(second.read(8), bytesOf("question"));
    second.write(bytesOf("answer"));
    EXPECT_EQ(receive(transport, 6), bytesOf("answer"));
    EXPECT_EQ(transport.counters().connects, 2u);
}

TEST(SocketTransportFailure, ReconnectsSilentlyWhenThePeerHasReset) {
    GuardedListener listener;
    SocketTransport transport("127.0.0.1", listener.portText());
    listener.accept().reset();

    sendText(transport, "question");
    EXPECT_EQ(listener.accept().read(8), bytesOf("question"));
}

TEST(SocketTransportFailure, ReconnectsAsOftenAsThePeerCloses) {
    GuardedListener listener;
    SocketTransport transport("127.0.0.1", listener.portText());
    for (int i = 0; i < 5; ++i) {
        listener.accept().close();
        sendText(transport, "question");
    }
    EXPECT_EQ(listener.accept().read(8), bytesOf("question"));
    EXPECT_EQ(transport.counters().connects, 6u);
}

TEST(SocketTransportFailure, DropsReadAheadBytesWhenItConnectsAnew) {
    GuardedListener listener;
    SocketTransport transport("127.0.0.1", listener.portText());
    auto first = listener.accept();
    first.write(bytesOf("answer and more"));
    EXPECT_EQ(receive(transport, 6), bytesOf("answer"));

    transport.connect();
    auto second = listener.accept();
    EXPECT_EQ(first.readToEnd(), Bytes{});
    sendText(transport, "question");
    second.write(bytesOf("second"));
    EXPECT_EQ(receive(transport, 6), bytesOf("second"));
}

TEST(SocketTransportFailure, ConnectsFirstWhenASendFindsItClosed) {
    GuardedListener listener;
    SocketTransport transport("127.0.0.1", listener.portText());
    auto first = listener.accept();
    first.write(bytesOf("answer and more"));
    receive(transport, 6);
    transport.close();
    transport.close();

    sendText(transport, "question");
    auto second = listener.accept();
    EXPECT_EQ(second.read(8), bytesOf("question"));
    second.write(bytesOf("second"));
    EXPECT_EQ(receive(transport, 6), bytesOf("second"));
}

TEST(SocketTransportFailure, FailsToReceiveWhenClosed) {
    GuardedListener listener;
    SocketTransport transport("127.0.0.1", listener.portText());
    transport.close();
    EXPECT_EQ(failureOf<NetworkError>([&] { receive(transport, 1); }),
              "Connection to device closed unexpectedly." +
                  support::errorCodeText(SystemError::notConnected));
}

TEST(SocketTransportFailure, StaysClosedAfterAFailedReconnectUntilASendSucceeds) {
    GuardedListener listener;
    SocketTransport transport("127.0.0.1", listener.portText());
    listener.accept().close();
    listener.stop();
    for (int attempt = 0; attempt < 3; ++attempt) {
        EXPECT_EQ(failureOf<NetworkError>([&] { sendText(transport, "question"); }), refusal(listener));
        EXPECT_THROW(receive(transport, 1), NetworkError);
    }

    listener.listen();
    sendText(transport, "question");
    EXPECT_EQ(listener.accept().read(8), bytesOf("question"));
}

TEST(SocketTransportFailure, ReportsAPeerThatClosesBeforeAllBytesHaveCome) {
    GuardedListener listener;
    SocketTransport transport("127.0.0.1", listener.portText());
    auto peer = listener.accept();
    peer.write(bytesOf("ans"));
    peer.close();
    EXPECT_EQ(failureOf<NetworkError>([&] { receive(transport, 6); }), connectionReset);
}

TEST(SocketTransportFailure, ReportsAPeerThatClosesInTheMiddleOfALargeBlock) {
    ScriptedServer server([](RawListener& listener) { listener.accept().write(pattern(100000)); });
    SocketTransport transport("127.0.0.1", server.portText());
    EXPECT_EQ(failureOf<NetworkError>([&] { receive(transport, 1000000); }), connectionReset);
}

TEST(SocketTransportFailure, ReportsAPeerThatResetsWhileItIsWaitedFor) {
    ScriptedServer server([](RawListener& listener) {
        auto peer = listener.accept();
        peer.read(8);
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        peer.reset();
    });
    SocketTransport transport("127.0.0.1", server.portText());
    sendText(transport, "question");
    EXPECT_EQ(failureOf<NetworkError>([&] { receive(transport, 6); }), connectionReset);
}

TEST(SocketTransportFailure, ConnectsAnewAfterAReceiveHasFailed) {
    GuardedListener listener;
    SocketTransport transport("127.0.0.1", listener.portText());
    listener.accept().close();
    EXPECT_THROW(receive(transport, 1), TAVO::NetworkError);
    sendText(transport, "question");
    EXPECT_EQ(listener.accept().read(8), bytesOf("question"));
}

TEST(SocketTransportFailure, FailsToReceiveInPlaceWhenClosed) {
    GuardedListener listener;
    SocketTransport transport("127.0.0.1", listener.portText());
    transport.close();
    EXPECT_EQ(failureOf<NetworkError>([&] { transport.receiveInPlace(1); }),
              "Connection to device closed unexpectedly." +
                  support::errorCodeText(SystemError::notConnected));
}

} // namespace
