#include <chrono>
#include <stdexcept>
#include <string>

#include <gtest/gtest.h>

#include <tavo/simulator/scripted_peer.h>
#include <tests/simulator/raw_client.h>

namespace {

using namespace support;
using namespace TAVO::simulator;

std::string failureOf(ScriptedPeer& peer) {
    try {
        peer.join();
    } catch (const std::runtime_error& failure) {
        return failure.what();
    }
    return "none";
}

TEST(ScriptedPeer, ReadsARequestAndAnswersInPieces) {
    const auto request = requestBytes(7, {callBytes(1, 2, {9, 9}), callBytes(3, 4)});
    Bytes seen;
    ScriptedPeer peer([&](PeerListener& listener) {
        auto client = listener.accept();
        seen = client.readRequest();
        client.write({1, 2});
        client.write({3});
        client.finishWriting();
        EXPECT_EQ(client.readToEnd(), Bytes({5}));
    });
    {
        RawClient client(peer.port());
        client.send(joined({request, {5}}));
        EXPECT_EQ(client.receiveToEnd(), Bytes({1, 2, 3}));
    }
    EXPECT_EQ(failureOf(peer), "none");
    EXPECT_EQ(seen, request);
}

TEST(ScriptedPeer, ReportsTheFailureOfItsScriptAndClosesThePort) {
    ScriptedPeer peer([](PeerListener& listener) { listener.accept().read(4); });
    {
        RawClient client(peer.port());
        client.send({1, 2, 3});
    }
    EXPECT_EQ(failureOf(peer), "the client closed the connection after 3 of 4 bytes");
    EXPECT_EQ(failureOf(peer), "none");
    EXPECT_THROW(RawClient(peer.port()), std::runtime_error);
}

TEST(ScriptedPeer, EndsWithItsLastBytesAndGoesOnReading) {
    Bytes seen;
    ScriptedPeer peer([&](PeerListener& listener) {
        auto client = listener.accept();
        client.finishWith({1, 2, 3});
        seen = client.readToEnd();
    });
    {
        RawClient client(peer.port());
        EXPECT_EQ(client.receive(3), Bytes({1, 2, 3}));
        EXPECT_EQ(client.receive(), Bytes{});
        client.send({5});
    }
    peer.join();
    EXPECT_EQ(seen, Bytes({5}));
}

TEST(ScriptedPeer, WaitsNoLongerThanItsPatience) {
    ScriptedPeer peer([](PeerListener& listener) { listener.accept(); }, 16, std::chrono::milliseconds(20));
    EXPECT_EQ(failureOf(peer), "waited too long to accept");
    ScriptedPeer reader([](PeerListener& listener) { listener.accept().read(1); }, 16,
                        std::chrono::milliseconds(200));
    RawClient client(reader.port());
    EXPECT_EQ(failureOf(reader), "waited too long to read");
}

TEST(PeerListener, KeepsItsPortWhileItDoesNotListen) {
    PeerListener listener;
    listener.stop();
    EXPECT_THROW(RawClient(listener.port()), std::runtime_error);
    listener.listen();
    RawClient client(listener.port());
    EXPECT_TRUE(listener.hasWaitingClient());
    client.send({8});
    auto accepted = listener.accept();
    EXPECT_FALSE(listener.hasWaitingClient());
    EXPECT_EQ(accepted.read(1), Bytes({8}));
    accepted.close();
    EXPECT_FALSE(accepted.isOpen());
    EXPECT_EQ(client.receive(), Bytes{});
}

} // namespace
