#include <atomic>
#include <chrono>
#include <ostream>
#include <thread>

#include <tavo/client/object/multicall_queue.h>
#include <tests/device/opened_device.h>

namespace {

using support::Bytes;
using support::failureOf;
using support::FakeCall;
using support::joined;
using support::RawConnection;
using support::result;
using support::text;
using support::u32;
using TAVO::NetworkError;

const auto credentials = joined({text("alice"), text("secret")});

/// What a released device does to give its lock back.
class Releasing : public support::OpenedDevice {
protected:
    /// Runs three calls, one of which fails in that way.
    std::string failureOfBatch(support::ApplianceServer::Fault fault) {
        const auto queue = std::make_shared<TAVO::MulticallQueue>();
        for (int i = 0; i < 3; ++i)
            queue->add(device->getDevice()->getTypeMethod());
        server.failNext(std::move(fault));
        return failureOf<TAVO::Error>([&] { device->multicall(queue); });
    }

    void expectUnlockOver(std::size_t connections) {
        forget();
        device.reset();
        server.awaitNoConnection();
        EXPECT_EQ(callNames(), Names{"0.unlock"});
        EXPECT_EQ(server.calls().back(), (FakeCall{0x51, 0, "unlock", credentials}));
        EXPECT_EQ(server.connections(), connections);
    }

    std::shared_ptr<TAVO::Device> device = build();
};

TEST_F(Releasing, ADeviceBehindStrayBytesUnlocksOverANewConnection) {
    server.failNext([](RawConnection& connection, const Bytes& reply) {
        connection.write(joined({reply, {1, 2, 3}}));
    });
    EXPECT_EQ(device->getDevice()->type(), "device");
    expectUnlockOver(2);
}

TEST_F(Releasing, ADeviceThatHasTakenAStrayByteUnlocksOverANewConnection) {
    server.failNext([](RawConnection& connection, const Bytes& reply) {
        connection.write(joined({reply, {1}}));
    });
    EXPECT_EQ(device->getDevice()->type(), "device");
    EXPECT_EQ(failureOf<NetworkError>([&] { device->getDevice()->type(); }),
              "Unexpected data recieved from device.");
    expectUnlockOver(2);
}

TEST_F(Releasing, ADeviceBehindAWrongCountUnlocksOverANewConnection) {
    EXPECT_EQ(failureOfBatch([](RawConnection& connection, const Bytes&) {
                  connection.write(joined({u32(0), u32(0), u32(2)}));
              }),
              "Error calling methods: received result count of 2 expected count of 3");
    expectUnlockOver(2);
}

TEST_F(Releasing, ADeviceWhoseReplyWasLeftInTheMiddleUnlocksOverANewConnection) {
    server.failNext([](RawConnection& connection, const Bytes&) {
        connection.write(support::replyWith({{0, 0}, result(0, text("device")), result(0, text("device"))}));
    });
    const auto queue = std::make_shared<TAVO::MulticallQueue>();
    for (int i = 0; i < 3; ++i)
        queue->add(device->getDevice()->getTypeMethod());
    EXPECT_THROW(device->multicall(queue), TAVO::SpecificationError);
    expectUnlockOver(2);
}

TEST_F(Releasing, ADeviceWhoseReplyWasInterruptedUnlocksOverANewConnection) {
    std::atomic<bool> half = false;
    server.failNext([&](RawConnection& connection, const Bytes& reply) {
        connection.write(Bytes(reply.begin(), reply.begin() + 6));
        half = true;
    });
    std::thread other([&] {
        while (!half)
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        device->interrupt();
    });
    EXPECT_EQ(failureOf<NetworkError>([&] { device->getDevice()->type(); }), "Call to device interrupted.");
    other.join();
    expectUnlockOver(2);
}

TEST_F(Releasing, ADeviceBehindMoreResultsThanCallsUnlocksOverANewConnection) {
    EXPECT_EQ(
        failureOfBatch([](RawConnection& connection, const Bytes&) {
            const auto name = support::block(result(0, text("device")));
            connection.write(joined({u32(0), support::deviceError(1010, "hot"), u32(4), name, name, name}));
        }),
        "Unknown error code: 1010: hot");
    expectUnlockOver(2);
}

TEST_F(Releasing, ADeviceBehindADeviceErrorUnlocksOverTheSameConnection) {
    EXPECT_EQ(failureOfBatch([](RawConnection& connection, const Bytes&) {
                  connection.write(joined({u32(0), support::deviceError(1010, "hot"), u32(1),
                                           support::block(result(0, text("device")))}));
              }),
              "Unknown error code: 1010: hot");
    expectUnlockOver(1);
}

TEST_F(Releasing, ADeviceWhoseLastResultWasRefusedUnlocksOverTheSameConnection) {
    server.failNext(
        [](RawConnection& connection, const Bytes&) { connection.write(support::replyWith({result(0)})); });
    EXPECT_THROW(device->getDevice()->type(), TAVO::SpecificationError);
    expectUnlockOver(1);
}

TEST_F(Releasing, ADeviceThatIsInStepAgainUnlocksOverTheSameConnection) {
    server.failNext([](RawConnection& connection, const Bytes& reply) {
        connection.write(joined({reply, {1}}));
    });
    device->getDevice()->type();
    EXPECT_THROW(device->getDevice()->type(), NetworkError);
    EXPECT_EQ(device->getDevice()->type(), "device");
    expectUnlockOver(1);
}

TEST_F(Releasing, ADeviceWhoseCallWasNotSentUnlocksOverTheSameConnection) {
    EXPECT_THROW(device->call(nullptr), TAVO::Error);
    expectUnlockOver(1);
}

TEST_F(Releasing, AnOpeningThatGetsOutOfStepBehindItsLockUnlocksOverANewConnection) {
    device.reset();
    server.awaitNoConnection();
    const auto before = server.connections();
    const auto requestsUntilLock = 6;
    for (const Bytes& wrong : {joined({u32(0), u32(0), u32(2)}), joined({u32(0), u32(0), u32(0)}),
                               joined({u32(0), u32(4), u32(7), u32(1)})}) {
        const auto connections = server.connections();
        server.setFault(server.exchanges() + requestsUntilLock + 1,
                        [&](RawConnection& connection, const Bytes&) { connection.write(wrong); });
        EXPECT_THROW(build(), TAVO::Error);
        server.awaitNoConnection();
        EXPECT_EQ(server.calls().back(), (FakeCall{0x51, 0, "unlock", credentials}));
        EXPECT_EQ(server.connections(), connections + 2);
    }
    EXPECT_EQ(server.connections(), before + 6);
}

} // namespace
