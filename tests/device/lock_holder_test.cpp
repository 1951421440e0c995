#include <memory>
#include <string>

#include <gtest/gtest.h>

#include <tavo/client.h>
#include <tavo/simulator/simulator.h>
#include <tests/support/all_types.h>
#include <tests/support/appliance_server.h>

/// Who holds the lock, asked without taking it, and openings that leave the lock to whom it belongs.
namespace {

using TAVO::Device;
using TAVO::DeviceFactory;
using TAVO::OpenOptions;

class LockHolder : public testing::Test {
protected:
    LockHolder() {
        support::registerAllTypes();
        simulator.start();
    }

    std::shared_ptr<Device> open(const std::string& user, const std::string& password,
                                 const OpenOptions& options = {}) const {
        return DeviceFactory::buildDevice("127.0.0.1", simulator.port(), user, password, false, options);
    }
    std::shared_ptr<Device> query() const {
        TAVO::Device_Factory_Structs::TavoDeviceDescriptor descriptor;
        return DeviceFactory::queryDevice("127.0.0.1", simulator.port(), descriptor);
    }

    TAVO::simulator::Simulator simulator{{.accounts = {{"engineer", "tavo"}, {"guest", "guest"}}}};
    const OpenOptions keeping{.keepHeldLock = true};
};

TEST_F(LockHolder, IsToldWithoutTakingTheLock) {
    const auto asking = query();
    EXPECT_EQ(asking->lockHolder(), std::nullopt);
    EXPECT_FALSE(asking->isLocked());
    EXPECT_FALSE(simulator.lockHolder());
    const auto holding = open("guest", "guest");
    EXPECT_EQ(asking->lockHolder(), "guest");
    EXPECT_EQ(holding->lockHolder(), "guest") << "the own lock counts too";
    EXPECT_TRUE(holding->isLocked());
    EXPECT_EQ(holding->getSystem()->version(), TAVO::Version("1.0")) << "the lock id is used again";
    holding->value(holding->getSystem()->getTimeGetMethod());
    holding->unlock();
    EXPECT_EQ(asking->lockHolder(), std::nullopt);
}

TEST_F(LockHolder, AnotherDeviceOfTheUserKeepsTheLock) {
    for (const bool atOnce : {false, true}) {
        auto options = keeping;
        options.byLevels = atOnce;
        const auto bridge = open("engineer", "tavo");
        open("engineer", "tavo", options).reset();
        ASSERT_TRUE(simulator.lockHolder());
        EXPECT_EQ(simulator.lockHolder()->user, "engineer");
        EXPECT_THROW(open("guest", "guest", options), TAVO::LockError);
        EXPECT_TRUE(simulator.lockHolder());
        bridge->unlock();
        open("engineer", "tavo", options).reset();
        EXPECT_FALSE(simulator.lockHolder()) << "what was taken is given back";
    }
}

TEST_F(LockHolder, AnExplicitUnlockUnlocks) {
    const auto bridge = open("engineer", "tavo");
    open("engineer", "tavo", keeping)->unlock();
    EXPECT_FALSE(simulator.lockHolder());
}

TEST_F(LockHolder, IsAskedAgainWhenTheLockIsTakenAgain) {
    const auto device = open("engineer", "tavo", keeping);
    device->relock();
    device->unlock();
    const auto bridge = open("engineer", "tavo");
    device->relock();
    EXPECT_TRUE(device->isLocked());
}

TEST_F(LockHolder, InTwoHalvesDoesTheSame) {
    const auto bridge = open("engineer", "tavo");
    {
        const auto device = DeviceFactory::openDevice(query(), "engineer", "tavo", keeping);
        EXPECT_TRUE(device->isLocked());
    }
    EXPECT_TRUE(simulator.lockHolder());
    bridge->unlock();
    DeviceFactory::openDevice(query(), "engineer", "tavo", keeping).reset();
    EXPECT_FALSE(simulator.lockHolder());
}

TEST_F(LockHolder, AFailedOpeningLeavesTheLockToTheUserToo) {
    const auto bridge = open("engineer", "tavo");
    const auto first = simulator.requestCount();
    open("engineer", "tavo", keeping).reset();
    const auto requests = simulator.requestCount() - first;
    for (std::uint64_t failing = 1; failing <= requests; ++failing) {
        simulator.failNext(TAVO::simulator::faults::Close{}, failing);
        EXPECT_THROW(open("engineer", "tavo", keeping), TAVO::Error) << failing;
        ASSERT_TRUE(simulator.lockHolder()) << failing;
        const auto queried = query();
        simulator.failNext(TAVO::simulator::faults::Close{}, failing);
        try {
            DeviceFactory::openDevice(queried, "engineer", "tavo", keeping);
        } catch (const TAVO::NetworkError&) {
            EXPECT_FALSE(queried->isLocked());
        }
        simulator.setFaults({});
        ASSERT_TRUE(simulator.lockHolder()) << failing;
    }
}

class UnknownLockHolder : public testing::Test {
protected:
    UnknownLockHolder() {
        support::registerAllTypes();
        support::addFixedObjects(appliance);
    }
    support::FakeAppliance appliance;
};

TEST_F(UnknownLockHolder, IsAskedForOnlyByThatOption) {
    support::ApplianceServer server(appliance);
    DeviceFactory::buildDevice("127.0.0.1", server.port(), "alice", "secret", false).reset();
    for (const auto& name : server.callNames())
        EXPECT_NE(name, "1.timeGet");
}

TEST_F(UnknownLockHolder, OfADeviceThatDoesNotTellIsTakenForNobody) {
    support::ApplianceServer server(appliance);
    DeviceFactory::buildDevice("127.0.0.1", server.port(), "alice", "secret", false, {.keepHeldLock = true})
        .reset();
    ASSERT_FALSE(server.callNames().empty());
    EXPECT_EQ(server.callNames().back(), "0.unlock");
}

} // namespace
