#include <chrono>
#include <ostream>
#include <thread>

#include <tavo/client/wire/interrupter.h>
#include <tavo/simulator/simulator.h>
#include <tests/device/opened_device.h>
#include <tests/support/fake_device.h>

namespace {

using support::Bytes;
using support::failureOf;
using support::joined;
using support::RawConnection;
using support::result;
using support::text;
using support::u32;
using TAVO::DeviceFactory;
using TAVO::Interrupter;

struct FaultCase {
    std::string name;
    support::ApplianceServer::Fault happens;
};

void PrintTo(const FaultCase& fault, std::ostream* out) { *out << fault.name; }

/// openDevice() that fails, and what it leaves.
class Reopening : public support::OpenedDevice {
protected:
    static constexpr std::size_t stepsOfOpening = 1 + 4 + 5 + 1 + 5;

    static void expectAsQueried(const TAVO::Device& device) {
        EXPECT_NE(device.getDevice(), nullptr);
        EXPECT_EQ(device.getPrivate(), nullptr);
        EXPECT_EQ(device.getSystem(), nullptr);
        EXPECT_TRUE(device.getChildren().empty());
    }
};

class ReopeningAfter : public Reopening, public testing::WithParamInterface<FaultCase> {};

TEST_P(ReopeningAfter, AFaultAtAnyStepBuildsACleanTree) {
    for (std::size_t step = 1; step <= stepsOfOpening; ++step) {
        SCOPED_TRACE(step);
        auto device = query();
        forget();
        server.setFault(server.exchanges() + step, GetParam().happens);
        EXPECT_THROW(DeviceFactory::openDevice(device, "alice", "secret"), TAVO::Error);
        expectAsQueried(*device);
        EXPECT_EQ(callNames().back() == "0.unlock", step > 1) << callNames().back();

        EXPECT_EQ(DeviceFactory::openDevice(device, "bob", "pass"), device);
        EXPECT_NE(device->getSystem(), nullptr);
        EXPECT_NE(device->getPrivate(), nullptr);
        EXPECT_EQ(device->getChildren().size(), 1u);
        device.reset();
        server.awaitNoConnection();
        EXPECT_EQ(server.calls().back(),
                  (support::FakeCall{0x51, 0, "unlock", joined({text("bob"), text("pass")})}));
    }
}

INSTANTIATE_TEST_SUITE_P(
    Faults, ReopeningAfter,
    testing::Values(FaultCase{"DeviceError",
                              [](RawConnection& connection, const Bytes&) {
                                  connection.write(support::errorReply(1002, "no"));
                              }},
                    FaultCase{"Close", [](RawConnection& connection, const Bytes&) { connection.close(); }},
                    FaultCase{"WrongCount",
                              [](RawConnection& connection, const Bytes&) {
                                  connection.write(joined({u32(0), u32(0), u32(3), {1, 2, 3}}));
                              }},
                    FaultCase{"ShortResult",
                              [](RawConnection& connection, const Bytes&) {
                                  connection.write(support::replyWith({{0, 0}}));
                              }}),
    [](const auto& tested) { return tested.param.name; });

TEST_F(Reopening, KeepsNothingOfTheMembersThatWereBuiltBefore) {
    const auto device = query();
    answer("rootMembers", result(0, joined({u32(2), text("power"), u32(9), text("missing"), u32(77)})));
    EXPECT_THROW(DeviceFactory::openDevice(device, "alice", "secret"), TAVO::SpecificationError);
    expectAsQueried(*device);
    answer("rootMembers", result(0, joined({u32(1), text("other"), u32(9)})));
    DeviceFactory::openDevice(device, "alice", "secret");
    ASSERT_EQ(device->getChildren().size(), 1u);
    EXPECT_EQ(device->getChildren()[0]->getName(), "other");
}

TEST_F(Reopening, AfterARefusedLockHasTheFormerCredentials) {
    const auto device = query();
    answer("lock", [](const Bytes&) -> Bytes { throw support::DeviceFault{1001, "carol"}; });
    EXPECT_THROW(DeviceFactory::openDevice(device, "bob", "pass"), TAVO::LockError);
    answer("lock", result(0, u32(0x51)));
    device->relock();
    EXPECT_EQ(server.calls().back().parameters, joined({text(""), text("")}));
}

TEST_F(Reopening, OfAnOpenDeviceThatFailsLeavesItAsItWas) {
    auto device = build();
    const auto system = device->getSystem();
    const auto privateObject = device->getPrivate();
    const auto power = device->getChild("power");
    for (std::size_t step = 1; step <= stepsOfOpening; ++step) {
        SCOPED_TRACE(step);
        forget();
        server.setFault(server.exchanges() + step, [](RawConnection& connection, const Bytes&) {
            connection.write(support::errorReply(1002, "no"));
        });
        EXPECT_THROW(DeviceFactory::openDevice(device, "bob", "pass"), TAVO::SpecificationError);
        EXPECT_NE(callNames().back(), "0.unlock");
        EXPECT_EQ(device->getSystem(), system);
        EXPECT_EQ(device->getPrivate(), privateObject);
        EXPECT_EQ(device->getChildren(), std::vector{power});
        EXPECT_EQ(device->getDevice()->type(), "device");
        EXPECT_EQ(server.calls().back().lockId, 0x51u);
    }
    device.reset();
    server.awaitNoConnection();
    EXPECT_EQ(server.calls().back(),
              (support::FakeCall{0x51, 0, "unlock", joined({text("alice"), text("secret")})}));
}

TEST_F(Reopening, OfAnOpenDeviceThatGotAnotherLockGivesThatLockBackInTheEnd) {
    auto device = build();
    answer("lock", result(0, u32(0x52)));
    answer("rootMembers", result(1, u32(0)));
    EXPECT_THROW(DeviceFactory::openDevice(device, "bob", "pass"), TAVO::Error);
    device.reset();
    server.awaitNoConnection();
    EXPECT_EQ(server.calls().back(),
              (support::FakeCall{0x52, 0, "unlock", joined({text("bob"), text("pass")})}));
}

TEST_F(Reopening, OfADeviceOfAnotherClassUnlocksItWhenItWasNotOpen) {
    const auto device = std::make_shared<support::FakeDevice>();
    support::addFixedObjects(device->appliance);
    device->setDevice(std::dynamic_pointer_cast<TAVO::Device_v1_0>(
        TAVO::ObjectFactory::buildObject(device, "device", 0, nullptr)));
    device->appliance.object(0).method("rootMembers", result(1, u32(0)));
    EXPECT_THROW(DeviceFactory::openDevice(device, "carol", "secret"), TAVO::Error);
    EXPECT_EQ(device->actions, (Names{"lock carol", "unlock"}));
    expectAsQueried(*device);

    device->appliance.object(0).method("rootMembers", result(0, u32(0)));
    DeviceFactory::openDevice(device, "carol", "secret");
    device->appliance.object(0).method("rootMembers", result(1, u32(0)));
    EXPECT_THROW(DeviceFactory::openDevice(device, "carol", "secret"), TAVO::Error);
    EXPECT_EQ(device->actions, (Names{"lock carol", "unlock", "lock carol", "lock carol"}));
    EXPECT_NE(device->getSystem(), nullptr);
}

TEST_F(Reopening, OfADeviceThatWasNeverIdentifiedIsRefused) {
    const auto device = std::make_shared<support::FakeDevice>();
    EXPECT_EQ(
        failureOf<TAVO::SpecificationError>([&] { DeviceFactory::openDevice(device, "carol", "secret"); }),
        "device object not found.");
    EXPECT_EQ(device->actions, (Names{"lock carol", "unlock"}));
}

/// openDevice() that is interrupted behind its lock.
class InterruptedReopening : public testing::Test {
protected:
    InterruptedReopening() {
        TAVO::CoreObjects::registerCoreObjects();
        simulator.start();
        TAVO::Device_Factory_Structs::TavoDeviceDescriptor descriptor;
        device = DeviceFactory::queryDevice("127.0.0.1", simulator.port(), descriptor, interrupter);
    }

    void expectInterruption() {
        simulator.failNext(TAVO::simulator::faults::Silent{}, 2); // the request behind "lock"
        std::thread other([&, silent = simulator.requestCount() + 2] {
            while (simulator.requestCount() < silent)
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
            interrupter->interrupt();
        });
        EXPECT_EQ(
            failureOf<TAVO::NetworkError>([&] { DeviceFactory::openDevice(device, "engineer", "tavo"); }),
            "Call to device interrupted.");
        other.join();
    }

    support::HangGuard guard;
    TAVO::simulator::Simulator simulator{{.topology = "bare"}};
    std::shared_ptr<Interrupter> interrupter = std::make_shared<Interrupter>();
    std::shared_ptr<TAVO::Device> device;
};

TEST_F(InterruptedReopening, GivesTheLockBackAtOnce) {
    expectInterruption();
    EXPECT_FALSE(simulator.lockHolder());
    EXPECT_TRUE(DeviceFactory::openDevice(device, "guest", "tavo"));
}

TEST_F(InterruptedReopening, WithinAnOperationGivesTheLockBackWhenTheDeviceIsReleased) {
    {
        const Interrupter::Operation operation(*interrupter);
        expectInterruption();
    }
    ASSERT_TRUE(simulator.lockHolder());
    device.reset();
    EXPECT_FALSE(simulator.lockHolder());
}

} // namespace
