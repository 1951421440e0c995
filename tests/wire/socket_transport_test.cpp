#include <cstdint>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include <tavo/client/wire/error.h>
#include <tavo/client/wire/socket_transport.h>
#include <tests/support/raw_server.h>
#include <tests/support/system_error.h>
#include <tests/support/transport_calls.h>

namespace {

using support::Bytes;
using support::bytesOf;
using support::GuardedListener;
using support::pattern;
using support::RawListener;
using support::receive;
using support::ScriptedServer;
using support::sendText;
using TAVO::SocketTransport;
using TAVOX::OutputStream;

/// A connected pair, both ends in this thread.
class SocketTransportPair : public testing::Test {
protected:
    GuardedListener listener;
    SocketTransport transport{"127.0.0.1", listener.portText()};
    support::RawConnection peer{listener.accept()};
};

TEST(SocketTransport, IsConnectedOnceConstructed) {
    GuardedListener listener;
    const SocketTransport transport("127.0.0.1", listener.portText());
    EXPECT_TRUE(listener.hasWaitingClient());
    EXPECT_EQ(transport.counters().connects, 1u);
    EXPECT_EQ(transport.counters().polls, 0u);
}

TEST(SocketTransport, ResolvesHostNames) {
    GuardedListener listener;
    try {
        const SocketTransport transport("localhost", listener.portText());
        EXPECT_TRUE(listener.hasWaitingClient());
    } catch (const TAVO::NetworkError& error) {
        // The first address of the name may be one that the listener does not have; no other is tried.
        EXPECT_EQ(std::string(error.what()),
                  "Could not connect to socket to: localhost port " + listener.portText() +
                      support::errorCodeText(support::SystemError::connectionRefused));
    }
}

TEST_F(SocketTransportPair, ClosesTheConnectionWhenDestroyed) {
    {
        SocketTransport shortLived("127.0.0.1", listener.portText());
        auto other = listener.accept();
        sendText(shortLived, "bye");
        shortLived.close();
        EXPECT_EQ(other.readToEnd(), bytesOf("bye"));
    }
    auto temporary = std::make_unique<SocketTransport>("127.0.0.1", listener.portText());
    auto other = listener.accept();
    temporary.reset();
    EXPECT_EQ(other.readToEnd(), Bytes{});
}

TEST_F(SocketTransportPair, MovesBytesBothWays) {
    sendText(transport, "question");
    EXPECT_EQ(peer.read(8), bytesOf("question"));
    peer.write(bytesOf("answer"));
    EXPECT_EQ(receive(transport, 6), bytesOf("answer"));
}

TEST_F(SocketTransportPair, AsksTheSystemThreeTimesForASmallCall) {
    for (std::uint64_t calls = 1; calls <= 5; ++calls) {
        sendText(transport, "question");
        peer.read(8);
        peer.write(bytesOf("answer"));
        receive(transport, 2);
        receive(transport, 4);
        EXPECT_EQ(transport.counters().polls, calls);
        EXPECT_EQ(transport.counters().sends, calls);
        EXPECT_EQ(transport.counters().receives, calls);
    }
    EXPECT_EQ(transport.counters().connects, 1u);
}

TEST_F(SocketTransportPair, SendsNothingForNoBytes) {
    transport.sendAll(nullptr, 0);
    transport.send(OutputStream().chunks());
    EXPECT_EQ(transport.counters().sends, 0u);
    transport.close();
    EXPECT_EQ(peer.readToEnd(), Bytes{});
}

TEST_F(SocketTransportPair, SendsTheChunksOfARequestAsOneUnbrokenRun) {
    OutputStream request;
    const auto bytes = pattern(60000);
    request.writeBytes(bytes.size(), bytes.data());
    request.writeUInt32(0x01020304);
    ASSERT_EQ(request.chunks().size(), 3u);

    transport.send(request.chunks());

    Bytes expected{0, 0, 0xEA, 0x60};
    expected.insert(expected.end(), bytes.begin(), bytes.end());
    expected.insert(expected.end(), {1, 2, 3, 4});
    EXPECT_EQ(peer.read(expected.size()), expected);
    EXPECT_EQ(transport.counters().polls, 1u);
    EXPECT_EQ(transport.counters().sends, 1u);
}

TEST_F(SocketTransportPair, SkipsAnEmptyFirstChunkAndUnusedEnds) {
    OutputStream request;
    for (std::size_t i = 0; i < OutputStream::chunkCapacity - 3; ++i)
        request.writeByte(0xEE);
    request.writeUInt32(0x01020304);
    transport.send(request.chunks());
    const auto received = peer.read(OutputStream::chunkCapacity + 1);
    EXPECT_EQ(Bytes(received.end() - 6, received.end()), (Bytes{0xEE, 0xEE, 1, 2, 3, 4}));
}

TEST(SocketTransport, SendsRequestsThatTheSystemCannotTakeAtOnce) {
    const auto bytes = pattern(32u << 20);
    ScriptedServer server([&](RawListener& listener) {
        auto peer = listener.accept();
        EXPECT_EQ(peer.read(4), (Bytes{0x02, 0, 0, 0}));
        EXPECT_TRUE(peer.read(bytes.size()) == bytes);
        peer.write(bytesOf("ok"));
    });
    SocketTransport transport("127.0.0.1", server.portText());
    OutputStream request;
    request.writeBytes(bytes.size(), bytes.data());
    transport.send(request.chunks());
    EXPECT_EQ(receive(transport, 2), bytesOf("ok"));
    EXPECT_EQ(transport.counters().polls, 1u);
}

TEST_F(SocketTransportPair, ReceivesNothingForLengthZero) {
    transport.receiveAll(nullptr, 0);
    EXPECT_EQ(transport.counters().receives, 0u);
    transport.close();
    EXPECT_NO_THROW(transport.receiveAll(nullptr, 0));
}

TEST_F(SocketTransportPair, ReceivesManyMessagesThatCameTogetherAtOnce) {
    Bytes messages;
    for (std::uint8_t i = 0; i < 100; ++i)
        messages.insert(messages.end(), 10, i);
    peer.write(messages);
    for (std::uint8_t i = 0; i < 100; ++i)
        EXPECT_EQ(receive(transport, 10), Bytes(10, i));
    EXPECT_EQ(transport.counters().receives, 1u);
}

TEST(SocketTransport, WaitsUntilAllBytesHaveArrived) {
    ScriptedServer server([](RawListener& listener) {
        auto peer = listener.accept();
        for (const char* piece : {"f", "ragm", "ents"}) {
            peer.write(bytesOf(piece));
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
    });
    SocketTransport transport("127.0.0.1", server.portText());
    EXPECT_EQ(receive(transport, 9), bytesOf("fragments"));
}

TEST(SocketTransport, DeliversTheSameBytesWhateverTheirBlocks) {
    const std::vector<std::size_t> blocks{1,     65535, 65536,   65537, 0,      3, 200000,
                                          65536, 7,     1 << 20, 1,     131072, 2, 65535};
    std::size_t total = 0;
    for (const auto block : blocks)
        total += block;
    const auto bytes = pattern(total);
    ScriptedServer server([&](RawListener& listener) {
        auto peer = listener.accept();
        peer.write(bytes);
        peer.readToEnd();
    });

    SocketTransport transport("127.0.0.1", server.portText());
    auto expected = bytes.begin();
    for (const auto block : blocks) {
        const auto end = expected + static_cast<std::ptrdiff_t>(block);
        EXPECT_TRUE(receive(transport, block) == Bytes(expected, end)) << "block of " << block;
        expected = end;
    }
}

TEST_F(SocketTransportPair, RefusesToSendWhenAByteCameUnasked) {
    peer.write(bytesOf("x"));
    try {
        sendText(transport, "question");
        FAIL() << "the stray byte went unnoticed";
    } catch (const TAVO::NetworkError& error) {
        EXPECT_STREQ(error.what(), "Unexpected data recieved from device.");
    }
    EXPECT_EQ(transport.counters().sends, 0u);

    sendText(transport, "again");
    EXPECT_EQ(peer.read(5), bytesOf("again"));
    EXPECT_EQ(transport.counters().connects, 1u);
}

TEST_F(SocketTransportPair, TakesOneUnaskedByteFromTheSocketPerFailingSend) {
    peer.write(bytesOf("xyz"));
    EXPECT_THROW(sendText(transport, "question"), TAVO::NetworkError);
    EXPECT_EQ(receive(transport, 1), bytesOf("y"));
    EXPECT_THROW(sendText(transport, "question"), TAVO::NetworkError);
    sendText(transport, "question");
    EXPECT_EQ(peer.read(8), bytesOf("question"));
}

TEST_F(SocketTransportPair, TakesOneReadAheadByteNobodyAskedForPerFailingSend) {
    peer.write(bytesOf("answerxy"));
    EXPECT_EQ(receive(transport, 6), bytesOf("answer"));
    for (int stray = 0; stray < 2; ++stray) {
        try {
            sendText(transport, "question");
            FAIL() << "the stray byte went unnoticed";
        } catch (const TAVO::NetworkError& error) {
            EXPECT_STREQ(error.what(), "Unexpected data recieved from device.");
        }
    }
    sendText(transport, "question");
    EXPECT_EQ(peer.read(8), bytesOf("question"));
    EXPECT_EQ(transport.counters().polls, 1u);
    EXPECT_EQ(transport.counters().receives, 1u);
}

TEST_F(SocketTransportPair, StillDeliversReadAheadBytesBehindATakenOne) {
    peer.write(bytesOf("answerxy"));
    receive(transport, 6);
    EXPECT_THROW(sendText(transport, "question"), TAVO::NetworkError);
    EXPECT_EQ(receive(transport, 1), bytesOf("y"));
}

TEST_F(SocketTransportPair, FindsReadAheadBytesBeforeThePeersEnd) {
    peer.write(bytesOf("answerx"));
    peer.close();
    EXPECT_EQ(receive(transport, 6), bytesOf("answer"));
    EXPECT_THROW(sendText(transport, "question"), TAVO::NetworkError);
    sendText(transport, "question");
    EXPECT_EQ(listener.accept().read(8), bytesOf("question"));
}

TEST(SocketTransport, IsNeitherCopiedNorMoved) {
    EXPECT_FALSE(std::is_copy_constructible_v<SocketTransport>);
    EXPECT_FALSE(std::is_move_constructible_v<SocketTransport>);
}

} // namespace
