#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <tavo/client/device/core_objects.h>
#include <tavo/client/device/device_factory.h>
#include <tavo/client/device/device_v1_0.h>
#include <tavo/client/exchange/tavox_device.h>
#include <tavo/client/wire/error.h>
#include <tests/device/memory_transport.h>
#include <tests/device/opening_steps.h>
#include <tests/support/failure_text.h>

namespace {

using opening::buildsDevice;
using opening::checksKey;
using opening::locks;
using opening::Names;
using opening::unlocks;
using opening::operator+;
using support::failureOf;
using support::result;
using support::text;
using TAVO::DeviceFactory;

class OwnTransport : public testing::Test {
protected:
    OwnTransport() {
        TAVO::CoreObjects::registerCoreObjects();
        support::addFixedObjects(line.appliance);
    }

    std::unique_ptr<TAVO::Transport> transport() { return std::make_unique<support::MemoryTransport>(line); }
    std::shared_ptr<TAVO::Device> build(bool secure = false) {
        return DeviceFactory::buildDevice(transport(), "alice", "secret", secure);
    }

    support::MemoryLine line;
};

TEST_F(OwnTransport, TellsItsStateAndCountsItsConnectionsForTheDevice) {
    const auto device = build();
    EXPECT_TRUE(device->isConnected());
    EXPECT_EQ(device->reconnects(), 0u);
    line.endsBeforeSend = true;
    device->getDevice()->type();
    EXPECT_EQ(device->reconnects(), 1u);
}

const Names buildsBareTree{"2.methods", "2.type",    "2.methods", "2.members", "1.methods",
                           "1.type",    "1.version", "1.methods", "1.members", "0.rootMembers"};

TEST_F(OwnTransport, OpensADeviceWithTheSameExchangesAndIsDestroyedWithIt) {
    auto opened = build();
    EXPECT_EQ(line.log, (Names{"connect"} + buildsDevice + locks + buildsBareTree));
    EXPECT_EQ(opened->getDevice()->type(), "device");
    EXPECT_FALSE(line.isGone);
    opened.reset();
    EXPECT_EQ(line.log.back(), "0.unlock");
    EXPECT_TRUE(line.isGone);
}

TEST_F(OwnTransport, HasTheKeyCheckedWhenSecure) {
    build(true);
    EXPECT_EQ(line.log, (Names{"connect"} + buildsDevice + checksKey + locks + buildsBareTree + unlocks));
    line.appliance.object(0).method("getKey", result(0, text("tavo-dev-key-999")));
    EXPECT_EQ(failureOf<TAVO::TAVOKeyError>([&] { build(true); }), "TAVO authentication key not matched!");
}

TEST_F(OwnTransport, IdentifiesADeviceAndHasNoPort) {
    line.appliance.object(0).method("getKey", result(0, text("tavo-dev-key-010")));
    TAVO::Device_Factory_Structs::TavoDeviceDescriptor descriptor{false, false, 7};
    const auto queried = DeviceFactory::queryDevice(transport(), descriptor);
    EXPECT_EQ(descriptor, (TAVO::Device_Factory_Structs::TavoDeviceDescriptor{true, false, 0}));
    EXPECT_EQ(line.log, (Names{"connect"} + buildsDevice + Names{"0.getKey"}));
    EXPECT_EQ(DeviceFactory::openDevice(queried, "bob", "pass"), queried);
    EXPECT_EQ(line.log, (Names{"connect"} + buildsDevice + checksKey + locks + buildsBareTree));
}

TEST_F(OwnTransport, IsInterruptedByTheDevice) {
    const auto opened = build();
    opened->interrupt();
    EXPECT_EQ(line.interrupts, 1);
}

TEST_F(OwnTransport, IsNeeded) {
    const std::string refusal = "TAVOXDevice got an empty pointer to the transport";
    EXPECT_EQ(failureOf<std::invalid_argument>(
                  [] { DeviceFactory::buildDevice(std::unique_ptr<TAVO::Transport>(), "a", "b", false); }),
              refusal);
    TAVO::Device_Factory_Structs::TavoDeviceDescriptor descriptor;
    EXPECT_EQ(failureOf<std::invalid_argument>(
                  [&] { DeviceFactory::queryDevice(std::unique_ptr<TAVO::Transport>(), descriptor); }),
              refusal);
    EXPECT_EQ(failureOf<std::invalid_argument>(
                  [] { TAVO::TAVOXDevice(std::unique_ptr<TAVO::Transport>(), "a", "b", false); }),
              refusal);
}

TEST_F(OwnTransport, IsRenewedBehindStrayBytesBeforeTheUnlock) {
    auto opened = build();
    line.log.clear();
    line.hasStrayBytes = true;
    opened.reset();
    EXPECT_EQ(line.log, (Names{"connect", "0.unlock"}));
}

TEST_F(OwnTransport, ThatCannotRenewIsNotSentTheUnlockBehindStrayBytes) {
    auto opened = build();
    line.log.clear();
    line.hasStrayBytes = true;
    line.renews = false;
    opened.reset();
    EXPECT_EQ(line.log, Names{});
    EXPECT_TRUE(line.isGone);
}

} // namespace
