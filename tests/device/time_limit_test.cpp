#include <algorithm>
#include <chrono>
#include <memory>
#include <string>
#include <utility>

#include <tavo/client/device/open_options.h>
#include <tavo/client/exchange/tavox_device.h>
#include <tavo/client/wire/interrupter.h>
#include <tavo/client/wire/socket_transport.h>
#include <tests/device/memory_transport.h>
#include <tests/device/opened_device.h>
#include <tests/support/transport_calls.h>

namespace {

using namespace std::chrono_literals;
using support::Bytes;
using support::failureOf;
using support::RawConnection;
using support::timedOut;
using TAVO::DeviceFactory;
using TAVO::Interrupter;
using TAVO::NetworkError;
using TAVO::OpenOptions;
using TAVO::TimeLimit;

/// Long enough for an exchange that is answered, on a busy machine too.
constexpr TimeLimit shortLimit = 500ms;
constexpr TimeLimit longLimit = 1h;

/// The request is not answered.
void staySilent(RawConnection&, const Bytes&) {}

class LimitedDevice : public support::OpenedDevice {
protected:
    std::shared_ptr<TAVO::Device> buildWith(const OpenOptions& options, bool secure = false) {
        return DeviceFactory::buildDevice("127.0.0.1", server.port(), "alice", "secret", secure, options);
    }
    std::shared_ptr<TAVO::Device> queryWith(const OpenOptions& options) {
        TAVO::Device_Factory_Structs::TavoDeviceDescriptor descriptor;
        return DeviceFactory::queryDevice("127.0.0.1", server.port(), descriptor, options);
    }

    /// A call that is not answered; later ones have all the time that they need.
    void expectTimeOut(TAVO::Device& device) {
        device.setTimeLimit(shortLimit);
        server.failNext(staySilent);
        EXPECT_EQ(failureOf<NetworkError>([&] { device.getDevice()->type(); }), timedOut);
        device.setTimeLimit(longLimit);
    }
};

TEST_F(LimitedDevice, HasTheLimitThatItIsGiven) {
    const auto device = build();
    EXPECT_EQ(device->timeLimit(), std::nullopt);
    device->setTimeLimit(std::chrono::seconds(5));
    EXPECT_EQ(device->timeLimit(), TimeLimit(5s));
    device->setTimeLimit(std::nullopt);
    EXPECT_EQ(device->timeLimit(), std::nullopt);
}

TEST_F(LimitedDevice, HasTheLimitThatItIsOpenedWith) {
    const std::string host = "127.0.0.1";
    const int port = server.port();
    {
        const TAVO::OpenOptions patient{.timeLimit = std::chrono::seconds(5)};
        const auto device = TAVO::DeviceFactory::buildDevice(host, port, "engineer", "tavo", false, patient);
        EXPECT_EQ(device->timeLimit(), TimeLimit(5s));
    }
    server.awaitNoConnection();
    EXPECT_EQ(queryWith({.timeLimit = 8s})->timeLimit(), TimeLimit(8s));
    server.awaitNoConnection();
    EXPECT_EQ(buildWith({})->timeLimit(), std::nullopt);
}

TEST_F(LimitedDevice, EndsACallThatIsNotAnsweredAndKeepsTheLock) {
    const auto device = build();
    expectTimeOut(*device);
    EXPECT_FALSE(device->isConnected());
    EXPECT_TRUE(device->isLocked());

    EXPECT_EQ(device->getDevice()->type(), "device");
    EXPECT_EQ(device->reconnects(), 1u);
    EXPECT_EQ(server.calls().back().lockId, 0x51u) << "the lock outlives the connection";
}

TEST_F(LimitedDevice, TakesTheLockAgainWithItsCredentials) {
    const auto device = build();
    device->setTimeLimit(shortLimit);
    server.failNext(staySilent);
    EXPECT_EQ(failureOf<NetworkError>([&] { device->relock(); }), timedOut);
    device->setTimeLimit(longLimit);
    device->relock();
    EXPECT_EQ(server.calls().back().parameters,
              support::joined({support::text("alice"), support::text("secret")}));
}

TEST_F(LimitedDevice, EndsAnOpeningAndReleasesTheLockItTook) {
    build().reset();
    server.awaitNoConnection();
    const auto names = callNames();
    const auto lock =
        static_cast<std::size_t>(std::find(names.begin(), names.end(), "0.lock") - names.begin());
    // The unlock is the last one.
    for (const auto exchange : {std::size_t{0}, lock, lock + 1, names.size() - 2}) {
        forget();
        server.setFault(server.exchanges() + 1 + exchange, staySilent);
        EXPECT_EQ(failureOf<NetworkError>([&] { buildWith({.timeLimit = shortLimit}); }), timedOut)
            << exchange;
        server.awaitNoConnection();
        const auto asked = callNames();
        ASSERT_GT(asked.size(), exchange);
        EXPECT_EQ(asked.back() == "0.unlock", exchange > lock) << exchange;
    }
}

TEST_F(LimitedDevice, EndsAnIdentification) {
    server.failNext(staySilent);
    EXPECT_EQ(failureOf<NetworkError>([&] { queryWith({.timeLimit = shortLimit}); }), timedOut);
}

TEST_F(LimitedDevice, IsReleasedWithinTheLimit) {
    auto device = build();
    device->setTimeLimit(shortLimit);
    server.failNext(staySilent);
    device.reset();
    server.awaitNoConnection();
    EXPECT_EQ(callNames().back(), "0.unlock");
}

TEST_F(LimitedDevice, IsReleasedWithinTheLimitBehindACallThatTimedOut) {
    auto device = build(true);
    expectTimeOut(*device);
    device->setTimeLimit(shortLimit);
    server.failNext(staySilent);
    forget();
    device.reset();
    server.awaitNoConnection();
    EXPECT_EQ(callNames(), Names{"0.getKey"}) << "without the key of the new connection nothing is unlocked";
}

TEST_F(LimitedDevice, UnlocksOverANewConnectionBehindACallThatTimedOut) {
    auto device = build();
    expectTimeOut(*device);
    forget();
    device.reset();
    server.awaitNoConnection();
    EXPECT_EQ(callNames(), Names{"0.unlock"});
}

TEST_F(LimitedDevice, IsGivenTheLimitOfALaterOpening) {
    const auto device = queryWith({.timeLimit = 8s});
    DeviceFactory::openDevice(device, "alice", "secret", {.timeLimit = 9s});
    EXPECT_EQ(device->timeLimit(), TimeLimit(9s));
    DeviceFactory::openDevice(device, "alice", "secret", OpenOptions());
    EXPECT_EQ(device->timeLimit(), TimeLimit(9s));
}

TEST_F(LimitedDevice, HasTheFormerLimitAfterALaterOpeningThatTimedOut) {
    const auto device = queryWith({.timeLimit = 8s});
    server.failNext(staySilent);
    EXPECT_EQ(failureOf<NetworkError>(
                  [&] { DeviceFactory::openDevice(device, "alice", "secret", {.timeLimit = shortLimit}); }),
              timedOut);
    EXPECT_EQ(device->timeLimit(), TimeLimit(8s));
    DeviceFactory::openDevice(device, "alice", "secret");
    EXPECT_TRUE(device->isLocked());
}

TEST_F(LimitedDevice, CanBeInterruptedBeforeItsLimit) {
    const auto interrupter = std::make_shared<Interrupter>();
    const auto device = buildWith({.timeLimit = longLimit, .interrupter = interrupter});
    server.failNext([&](RawConnection&, const Bytes&) { interrupter->interrupt(); });
    EXPECT_EQ(failureOf<NetworkError>([&] { device->getDevice()->type(); }), "Call to device interrupted.");
    EXPECT_EQ(device->getDevice()->type(), "device");
}

TEST_F(LimitedDevice, IsInterruptedInALaterOpeningAsInOneOperation) {
    const auto interrupter = std::make_shared<Interrupter>();
    const auto device = queryWith({.interrupter = interrupter});
    // Behind the reply, which is taken: it is the next exchange that ends.
    server.failNext([&](RawConnection& connection, const Bytes& reply) {
        interrupter->interrupt();
        connection.write(reply);
    });
    EXPECT_EQ(failureOf<NetworkError>([&] {
                  DeviceFactory::openDevice(device, "alice", "secret", {.interrupter = interrupter});
              }),
              "Call to device interrupted.");
    EXPECT_FALSE(device->isLocked());
    DeviceFactory::openDevice(device, "alice", "secret");
    EXPECT_TRUE(device->isLocked());
}

TEST_F(LimitedDevice, PassesItsLimitToATransportOfTheApplicationsOwn) {
    const auto transport = [&] {
        return std::make_unique<TAVO::SocketTransport>("127.0.0.1", std::to_string(server.port()));
    };
    const auto device =
        DeviceFactory::buildDevice(transport(), "alice", "secret", false, {.timeLimit = longLimit});
    EXPECT_EQ(device->timeLimit(), longLimit);
    expectTimeOut(*device);
}

TEST_F(LimitedDevice, LeavesATransportItsOwnLimit) {
    auto transport = std::make_unique<TAVO::SocketTransport>("127.0.0.1", std::to_string(server.port()));
    transport->setTimeLimit(6s);
    TAVO::Device_Factory_Structs::TavoDeviceDescriptor descriptor;
    EXPECT_EQ(DeviceFactory::queryDevice(std::move(transport), descriptor, OpenOptions())->timeLimit(),
              TimeLimit(6s));
}

TEST(UnlimitedDevice, RunsOverATransportThatKnowsOfNoLimit) {
    TAVO::CoreObjects::registerCoreObjects();
    support::MemoryLine line;
    support::addFixedObjects(line.appliance);
    const auto device = DeviceFactory::buildDevice(std::make_unique<support::MemoryTransport>(line), "alice",
                                                   "secret", false, {.timeLimit = 1ms});
    EXPECT_EQ(device->timeLimit(), std::nullopt);
    device->setTimeLimit(1ms);
    EXPECT_EQ(device->timeLimit(), std::nullopt);
    EXPECT_EQ(device->getDevice()->type(), "device");
}

} // namespace
