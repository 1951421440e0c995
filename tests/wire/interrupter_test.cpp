#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include <tavo/client/wire/error.h>
#include <tavo/client/wire/interrupter.h>
#include <tavo/client/wire/socket_transport.h>
#include <tests/support/failure_text.h>
#include <tests/support/raw_server.h>
#include <tests/support/transport_calls.h>

namespace {

using support::Bytes;
using support::bytesOf;
using support::failureOf;
using support::interrupted;
using support::receive;
using support::sendText;
using TAVO::Interrupter;
using TAVO::NetworkError;
using TAVO::SocketTransport;

/// Transports that share an interrupter, and the far ends of their first connections.
class SharedInterrupter : public testing::Test {
protected:
    std::unique_ptr<SocketTransport> connect() {
        return std::make_unique<SocketTransport>("127.0.0.1", listener.portText(), interrupter);
    }

    support::GuardedListener listener;
    std::shared_ptr<Interrupter> interrupter = std::make_shared<Interrupter>();
    std::unique_ptr<SocketTransport> former = connect();
    support::RawConnection formerPeer{listener.accept()};
    std::unique_ptr<SocketTransport> latter = connect();
    support::RawConnection latterPeer{listener.accept()};
};

TEST_F(SharedInterrupter, StillServesTheLatterTransportWhenTheFormerDies) {
    former.reset();
    interrupter->interrupt();
    EXPECT_EQ(latterPeer.readToEnd(), Bytes{}) << "its connection is cut at once";
    EXPECT_EQ(failureOf<NetworkError>([&] { receive(*latter, 1); }), interrupted);
}

TEST_F(SharedInterrupter, ServesWhicheverTransportIsUsed) {
    sendText(*former, "question");
    EXPECT_EQ(formerPeer.read(8), bytesOf("question"));
    interrupter->interrupt();
    EXPECT_EQ(formerPeer.readToEnd(), Bytes{});
    EXPECT_EQ(failureOf<NetworkError>([&] { receive(*former, 1); }), interrupted);

    sendText(*latter, "again");
    EXPECT_EQ(latterPeer.readToEnd(), Bytes{}) << "it was interrupted while it was idle";
    EXPECT_EQ(listener.accept().read(5), bytesOf("again"));
}

TEST_F(SharedInterrupter, KeepsTheConnectionsOfOneWhenTheOtherConnectsAnew) {
    former->connect();
    auto peer = listener.accept();
    sendText(*latter, "question");
    EXPECT_EQ(latterPeer.read(8), bytesOf("question"));
    sendText(*former, "again");
    EXPECT_EQ(peer.read(5), bytesOf("again"));
    EXPECT_FALSE(listener.hasWaitingClient());
}

class InterruptedWhenIdle : public testing::Test {
protected:
    support::GuardedListener listener;
    std::shared_ptr<Interrupter> interrupter = std::make_shared<Interrupter>();
    SocketTransport transport{"127.0.0.1", listener.portText(), interrupter};
    support::RawConnection peer{listener.accept()};
};

// The byte makes it visible whether the connection is left: over the old one nothing could be sent.
TEST_F(InterruptedWhenIdle, ConnectsAnewWhateverOperationsWereMadeInBetween) {
    peer.write(bytesOf("x"));
    interrupter->interrupt();
    { const Interrupter::Operation operation(*interrupter); }
    sendText(transport, "question");
    EXPECT_EQ(listener.accept().read(8), bytesOf("question"));
}

TEST_F(InterruptedWhenIdle, ConnectsAnewInsideTheNextOperation) {
    peer.write(bytesOf("x"));
    interrupter->interrupt();
    const Interrupter::Operation operation(*interrupter);
    sendText(transport, "question");
    auto next = listener.accept();
    EXPECT_EQ(next.read(8), bytesOf("question"));
    sendText(transport, "again");
    EXPECT_EQ(next.read(5), bytesOf("again")) << "once";
}

TEST_F(InterruptedWhenIdle, ConnectsAnewAfterTheOperationThatTheInterruptFellInto) {
    {
        const Interrupter::Operation operation(*interrupter);
        peer.write(bytesOf("x"));
        interrupter->interrupt();
    }
    sendText(transport, "question");
    EXPECT_EQ(listener.accept().read(8), bytesOf("question"));
}

TEST_F(InterruptedWhenIdle, ConnectsWhenAskedTo) {
    interrupter->interrupt();
    transport.connect();
    auto next = listener.accept();
    sendText(transport, "question");
    EXPECT_EQ(next.read(8), bytesOf("question"));
    EXPECT_EQ(transport.connectionNumber(), 2u);
}

TEST_F(InterruptedWhenIdle, ConnectsWhenAskedToAfterItWasClosed) {
    transport.close();
    interrupter->interrupt();
    EXPECT_NO_THROW(transport.connect());
}

TEST_F(InterruptedWhenIdle, DoesNotConnectInsideTheOperationThatWasInterrupted) {
    {
        const Interrupter::Operation operation(*interrupter);
        interrupter->interrupt();
        for (int i = 0; i < 2; ++i) {
            EXPECT_EQ(failureOf<NetworkError>([&] { transport.connect(); }), interrupted);
            EXPECT_EQ(failureOf<NetworkError>([&] { sendText(transport, "question"); }), interrupted);
        }
        EXPECT_FALSE(listener.hasWaitingClient());
    }
    EXPECT_NO_THROW(transport.connect());
}

TEST_F(InterruptedWhenIdle, CanBeInterruptedAgainOverItsNextConnection) {
    for (int i = 0; i < 3; ++i) {
        sendText(transport, "question");
        if (i > 0)
            peer = listener.accept();
        EXPECT_EQ(peer.read(8), bytesOf("question"));
        interrupter->interrupt();
        EXPECT_EQ(peer.readToEnd(), Bytes{});
        EXPECT_EQ(failureOf<NetworkError>([&] { receive(transport, 1); }), interrupted);
    }
}

TEST_F(InterruptedWhenIdle, TakesTheReplyThatHadArrivedAndThenConnectsAnew) {
    sendText(transport, "question");
    peer.write(bytesOf("answer"));
    EXPECT_EQ(receive(transport, 1), bytesOf("a")) << "the rest is read ahead";
    interrupter->interrupt();
    EXPECT_EQ(receive(transport, 5), bytesOf("nswer"));
    sendText(transport, "again");
    EXPECT_EQ(listener.accept().read(5), bytesOf("again"));
}

} // namespace
