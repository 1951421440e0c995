#include <memory>
#include <string>
#include <thread>

#include <gtest/gtest.h>

#include <tavo/client/wire/error.h>
#include <tavo/client/wire/interrupter.h>
#include <tavo/client/wire/socket_transport.h>
#include <tavo/client/wire/transport.h>
#include <tests/support/failure_text.h>
#include <tests/support/raw_server.h>
#include <tests/support/system_error.h>
#include <tests/support/transport_calls.h>

namespace {

using support::Bytes;
using support::bytesOf;
using support::failureOf;
using TAVO::NetworkError;

class PlainTransport : public TAVO::Transport {
public:
    void send(const TAVOX::OutputStream::Chunks&) override {}
    void receiveAll(std::uint8_t*, std::uint64_t) override {}
};

TEST(Transport, HasOperationsThatMayBeLeftAsTheyAre) {
    PlainTransport plain;
    TAVO::Transport& transport = plain;
    transport.interrupt();
    transport.keepConnection(true);
    EXPECT_NO_THROW(transport.ensureConnected());
    EXPECT_FALSE(transport.renew());
    EXPECT_FALSE(transport.hasUnaskedBytes());
    EXPECT_EQ(transport.connectionNumber(), 0u);
}

/// A connected pair, both ends in this thread, the transport's used through its base.
class ConnectedTransport : public testing::Test {
protected:
    support::GuardedListener listener;
    std::shared_ptr<TAVO::Interrupter> interrupter = std::make_shared<TAVO::Interrupter>();
    std::unique_ptr<TAVO::SocketTransport> socketTransport =
        std::make_unique<TAVO::SocketTransport>("127.0.0.1", listener.portText(), interrupter);
    TAVO::Transport& transport = *socketTransport;
    support::RawConnection peer{listener.accept()};

    const std::string closedUnexpectedly = "Connection to device closed unexpectedly." +
                                           support::errorCodeText(support::SystemError::connectionReset);

    void sendText(const std::string& text) {
        TAVOX::OutputStream request;
        for (const auto byte : bytesOf(text))
            request.writeByte(byte);
        transport.send(request.chunks());
    }
    Bytes receive(std::size_t count) { return support::receive(transport, count); }
    /// Until the bytes or the end that the peer has sent are there.
    void awaitUnasked() {
        while (!transport.hasUnaskedBytes())
            std::this_thread::yield();
    }
};

TEST_F(ConnectedTransport, IsInterruptedThroughItsBase) {
    const TAVO::Interrupter::Operation operation(*interrupter);
    transport.interrupt();
    EXPECT_EQ(failureOf<NetworkError>([&] { sendText("question"); }), "Call to device interrupted.");
}

TEST_F(ConnectedTransport, RenewsItsConnectionAndDropsWhatCameUnasked) {
    peer.write(bytesOf("answerx"));
    EXPECT_EQ(receive(6), bytesOf("answer"));
    EXPECT_TRUE(transport.renew());
    EXPECT_EQ(peer.readToEnd(), Bytes{}) << "the connection is closed at once";
    EXPECT_FALSE(listener.hasWaitingClient()) << "and made anew when it is needed";
    EXPECT_FALSE(transport.hasUnaskedBytes());
    sendText("question");
    EXPECT_EQ(listener.accept().read(8), bytesOf("question"));
}

TEST_F(ConnectedTransport, TellsOfUnaskedBytesAndTakesNone) {
    EXPECT_FALSE(transport.hasUnaskedBytes());
    peer.write(bytesOf("answerx"));
    awaitUnasked();
    EXPECT_EQ(receive(6), bytesOf("answer"));
    EXPECT_TRUE(transport.hasUnaskedBytes()) << "one was read ahead";
    EXPECT_EQ(receive(1), bytesOf("x"));
    EXPECT_FALSE(transport.hasUnaskedBytes());
    EXPECT_EQ(transport.connectionNumber(), 1u);
}

TEST_F(ConnectedTransport, DoesNotTakeAnEndForUnaskedBytes) {
    peer.close();
    sendText("question"); // over a new connection: the end has been seen
    auto next = listener.accept();
    EXPECT_EQ(next.read(8), bytesOf("question"));
    next.reset();
    for (int i = 0; i < 100; ++i)
        EXPECT_FALSE(transport.hasUnaskedBytes());
    sendText("again");
    EXPECT_EQ(listener.accept().read(5), bytesOf("again"));
}

TEST_F(ConnectedTransport, EnsuresAConnection) {
    transport.ensureConnected();
    EXPECT_EQ(transport.connectionNumber(), 1u);
    EXPECT_FALSE(listener.hasWaitingClient());

    peer.close();
    transport.ensureConnected();
    EXPECT_EQ(transport.connectionNumber(), 2u);
    auto second = listener.accept();

    transport.renew();
    transport.ensureConnected();
    EXPECT_EQ(transport.connectionNumber(), 3u);
    auto third = listener.accept();
    sendText("question");
    EXPECT_EQ(third.read(8), bytesOf("question"));

    third.write(bytesOf("x"));
    awaitUnasked();
    EXPECT_EQ(failureOf<NetworkError>([&] { transport.ensureConnected(); }),
              "Unexpected data recieved from device.");
}

TEST_F(ConnectedTransport, EndsInsteadOfConnectingAnewWhileItsConnectionIsKept) {
    transport.keepConnection(true);
    sendText("question");
    EXPECT_EQ(peer.read(8), bytesOf("question"));
    peer.close();
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(failureOf<NetworkError>([&] { sendText("secret"); }), closedUnexpectedly);
        EXPECT_EQ(failureOf<NetworkError>([&] { transport.ensureConnected(); }), closedUnexpectedly);
    }
    EXPECT_FALSE(listener.hasWaitingClient());
    EXPECT_EQ(socketTransport->counters().connects, 1u);

    transport.keepConnection(false);
    sendText("question");
    EXPECT_EQ(transport.connectionNumber(), 2u);
    EXPECT_EQ(listener.accept().read(8), bytesOf("question"));
}

TEST_F(ConnectedTransport, DoesNotLeaveAKeptConnectionForAnIdleInterrupt) {
    transport.keepConnection(true);
    transport.interrupt();
    EXPECT_EQ(failureOf<NetworkError>([&] { sendText("secret"); }), closedUnexpectedly);
    const TAVO::Interrupter::Operation operation(*interrupter);
    transport.interrupt();
    EXPECT_EQ(failureOf<NetworkError>([&] { sendText("secret"); }), "Call to device interrupted.");
    EXPECT_FALSE(listener.hasWaitingClient());
}

} // namespace
