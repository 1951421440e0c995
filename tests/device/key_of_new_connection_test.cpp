#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <tests/device/memory_transport.h>
#include <tests/device/opened_device.h>

namespace {

using support::Bytes;
using support::failureOf;
using support::RawConnection;
using support::result;
using support::text;
using TAVO::DeviceFactory;
using Names = std::vector<std::string>;

const std::string misfit = "TAVO authentication key not matched!";

/// Connections that end between the key check and what carries the password, over memory, so that the moment
/// is certain.
class KeyOfNewConnection : public testing::Test {
protected:
    KeyOfNewConnection() {
        TAVO::CoreObjects::registerCoreObjects();
        support::addFixedObjects(line.appliance);
    }

    std::shared_ptr<TAVO::Device> build(bool secure) {
        return DeviceFactory::buildDevice(std::make_unique<support::MemoryTransport>(line), "alice", "secret",
                                          secure);
    }
    std::shared_ptr<TAVO::Device> query() {
        TAVO::Device_Factory_Structs::TavoDeviceDescriptor descriptor;
        return DeviceFactory::queryDevice(std::make_unique<support::MemoryTransport>(line), descriptor);
    }
    void showAnotherKey() { line.appliance.object(0).method("getKey", result(0, text("tavo-dev-key-999"))); }

    /// Once: the connection ends behind the reply to `call`.
    void endBehind(const std::string& call, TAVO::Device& device) {
        line.endsBehind = {call};
        device.getDevice()->type();
        line.endsBehind.clear();
        line.log.clear();
    }

    std::size_t count(const std::string& entry) const {
        return static_cast<std::size_t>(std::count(line.log.begin(), line.log.end(), entry));
    }

    support::MemoryLine line;
};

TEST_F(KeyOfNewConnection, IsCheckedBeforeALaterLock) {
    const auto device = build(true);
    endBehind("0.type", *device);
    device->relock();
    EXPECT_EQ(line.log, (Names{"connect", "0.getKey", "0.lock"}));
    device->relock();
    EXPECT_EQ(line.log, (Names{"connect", "0.getKey", "0.lock", "0.lock"}));
}

TEST_F(KeyOfNewConnection, IsCheckedBeforeTheUnlock) {
    const auto device = build(true);
    endBehind("0.type", *device);
    device->unlock();
    EXPECT_EQ(line.log, (Names{"connect", "0.getKey", "0.unlock"}));
}

TEST_F(KeyOfNewConnection, IsCheckedWhenAnotherCallHasMadeIt) {
    auto device = build(true);
    endBehind("0.type", *device);
    device->getDevice()->type();
    device.reset();
    EXPECT_EQ(line.log, (Names{"connect", "0.type", "0.getKey", "0.unlock"}));
}

TEST_F(KeyOfNewConnection, ThatDoesNotFitKeepsThePasswordBack) {
    auto device = build(true);
    endBehind("0.type", *device);
    showAnotherKey();
    EXPECT_EQ(failureOf<TAVO::TAVOKeyError>([&] { device->relock(); }), misfit);
    EXPECT_EQ(failureOf<TAVO::TAVOKeyError>([&] { device->unlock(); }), misfit);
    EXPECT_EQ(device->getDevice()->type(), "device");
    device.reset();
    EXPECT_EQ(count("0.lock"), 0u);
    EXPECT_EQ(count("0.unlock"), 0u);
}

TEST_F(KeyOfNewConnection, IsCheckedInTheMiddleOfAnOpening) {
    line.endsBehind = {"0.getKey"};
    const auto device = query();
    line.endsBehind.clear();
    line.log.clear();
    DeviceFactory::openDevice(device, "bob", "pass");
    EXPECT_EQ((Names{line.log.begin(), line.log.begin() + 3}), (Names{"connect", "0.getKey", "0.lock"}));
    EXPECT_EQ(count("0.getKey"), 1u);
}

TEST_F(KeyOfNewConnection, IsAskedForABoundedNumberOfTimes) {
    line.endsBehind = {"0.getKey"};
    EXPECT_EQ(failureOf<TAVO::NetworkError>([&] { build(true); }),
              "Connection to device closed unexpectedly.");
    EXPECT_EQ(count("0.getKey"), 4u);
    EXPECT_EQ(count("0.lock"), 0u);
}

TEST_F(KeyOfNewConnection, IsNotReplacedByAnUncheckedOneRightBeforeTheLock) {
    const auto device = query();
    line.endsBeforeSend = true;
    line.log.clear();
    EXPECT_EQ(failureOf<TAVO::NetworkError>([&] { DeviceFactory::openDevice(device, "bob", "pass"); }),
              "Connection to device closed unexpectedly.");
    EXPECT_EQ(count("0.lock"), 0u);
    EXPECT_EQ(device->getDevice()->type(), "device") << "other calls make a new connection again";
}

TEST_F(KeyOfNewConnection, IsNotAskedForWithoutSecurity) {
    auto device = build(false);
    endBehind("0.type", *device);
    showAnotherKey();
    device->relock();
    device.reset();
    EXPECT_EQ(line.log, (Names{"connect", "0.lock", "0.unlock"}));
}

/// The same over sockets.
class KeyOfNewSocket : public support::OpenedDevice {
protected:
    void endConnection(TAVO::Device& device) {
        server.failNext([](RawConnection& connection, const Bytes& reply) {
            connection.write(reply);
            connection.close();
        });
        device.getDevice()->type();
        server.awaitNoConnection();
        forget();
    }
};

TEST_F(KeyOfNewSocket, IsCheckedBeforeLockAndUnlock) {
    auto device = build(true);
    endConnection(*device);
    device->relock();
    EXPECT_EQ(callNames(), (Names{"0.getKey", "0.lock"}));
    endConnection(*device);
    device.reset();
    server.awaitNoConnection();
    EXPECT_EQ(callNames(), (Names{"0.getKey", "0.unlock"}));
    EXPECT_EQ(server.connections(), 3u);
}

TEST_F(KeyOfNewSocket, ThatDoesNotFitKeepsThePasswordBack) {
    auto device = query();
    endConnection(*device);
    answer("getKey", result(0, text("tavo-dev-key-999")));
    EXPECT_EQ(failureOf<TAVO::TAVOKeyError>([&] { DeviceFactory::openDevice(device, "bob", "pass"); }),
              misfit);
    EXPECT_EQ(callNames(), (Names{"0.getKey"}));
}

} // namespace
