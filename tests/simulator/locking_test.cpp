#include <tests/simulator/simulator_fixture.h>

namespace {

using namespace support;
using namespace TAVO::simulator;

class Locking : public SimulatorFixture {
protected:
    std::shared_ptr<TAVO::BoundMethod<TAVO::dto::Device::LockReply>>
    lock(const std::shared_ptr<TAVO::Device>& device, const std::string& user, const std::string& password) {
        return called(device, device->getDevice()->getLockMethod(user, password));
    }

    template <class Action>
    static std::string lockingUser(Action action) {
        try {
            action();
        } catch (const TAVO::LockError& error) {
            return error.lockingUser();
        }
        return "nobody";
    }
};

TEST_F(Locking, OpeningTakesTheLockAndClosingReleasesIt) {
    auto device = open("engineer");
    ASSERT_TRUE(simulator.lockHolder());
    EXPECT_EQ(simulator.lockHolder()->user, "engineer");
    EXPECT_NE(simulator.lockHolder()->lockId, 0u);
    device.reset();
    EXPECT_FALSE(simulator.lockHolder());
}

TEST_F(Locking, AnotherUserIsToldTheHolder) {
    const auto device = open("engineer");
    EXPECT_EQ(lockingUser([&] { open("guest"); }), "engineer");
    EXPECT_EQ(simulator.lockHolder()->user, "engineer");
}

TEST_F(Locking, TheSameUserGetsTheSameLockIdAgain) {
    const auto first = query(), second = query();
    const auto id = lock(first, "engineer", "tavo")->value().lockId;
    EXPECT_EQ(lock(second, "engineer", "tavo")->value().lockId, id);
}

TEST_F(Locking, EveryNewLockHasAnotherId) {
    open();
    const auto device = query();
    const auto first = lock(device, "engineer", "tavo")->value().lockId;
    called(device, device->getDevice()->getUnlockMethod("engineer", "tavo"));
    EXPECT_NE(lock(device, "engineer", "tavo")->value().lockId, first);
}

TEST_F(Locking, WrongCredentialsAreRefused) {
    EXPECT_THROW(open("engineer", "wrong"), TAVO::TAVOLoginError);
    EXPECT_THROW(open("stranger", "tavo"), TAVO::TAVOLoginError);
    EXPECT_FALSE(simulator.lockHolder());
    const auto device = open("engineer");
    EXPECT_THROW(open("guest", "wrong"), TAVO::TAVOLoginError);
}

TEST_F(Locking, OnlyTheHolderReleasesTheLock) {
    const auto holder = open("engineer");
    const auto other = query();
    const auto unlock = [&](const std::string& user, const std::string& password) {
        called(other, other->getDevice()->getUnlockMethod(user, password));
    };
    EXPECT_EQ(lockingUser([&] { unlock("guest", "tavo"); }), "engineer");
    EXPECT_THROW(unlock("engineer", "wrong"), TAVO::TAVOLoginError);
    EXPECT_TRUE(simulator.lockHolder());
    unlock("engineer", "tavo");
    EXPECT_FALSE(simulator.lockHolder());
    EXPECT_NO_THROW(unlock("guest", "tavo"));
}

TEST_F(Locking, CallsThatNeedTheLockFailWhileAnotherHoldsIt) {
    const auto power = call("power", "get"), reserve = call("power", "reserve", Bytes(9));
    const auto holder = open("engineer");
    RawClient client(simulator.port());
    for (const auto& refused : {power, reserve, call("system", "timeGet"), call("system", "deviceReset")})
        for (const std::uint32_t lockId : {0u, simulator.lockHolder()->lockId + 1}) {
            client.send(requestBytes(lockId, {refused}));
            EXPECT_EQ(client.receive(),
                      joined({u32(0), block(joined({u32(0), u32(1001), text("engineer")})), u32(0)}));
        }
    client.send(requestBytes(simulator.lockHolder()->lockId, {power}));
    EXPECT_EQ(client.receive(), replyWith({{0, 0, 0, 0, 0}}));
}

TEST_F(Locking, LookingIsFreeForEverybody) {
    const auto holder = open("engineer");
    const auto other = query();
    const auto object = other->getDevice();
    EXPECT_EQ(object->type(), "device");
    EXPECT_EQ(object->members().size(), 0u);
    EXPECT_FALSE(object->methods().empty());
    EXPECT_EQ(called(other, object->getAvailableMethod())->returnCode(), 0);
    EXPECT_EQ(called(other, object->getMethodsVerboseMethod())->returnCode(), 0);
    EXPECT_EQ(called(other, object->getInfoMethod())->returnCode(), 0);
    EXPECT_EQ(called(other, object->getRootMembersMethod())->returnCode(), 0);
    EXPECT_EQ(called(other, object->getLoginMethod("guest"))->returnCode(), 0);
}

TEST_F(Locking, EverythingIsFreeWhileNobodyHoldsTheLock) {
    RawClient client(simulator.port());
    client.send(requestBytes(0, {call("power", "set", {1})}));
    EXPECT_EQ(client.receive(), replyWith({u32(0)}));
    client.send(requestBytes(12345, {call("power", "get")}));
    EXPECT_EQ(client.receive(), replyWith({{0, 0, 0, 0, 1}}));
}

TEST_F(Locking, TheLockSurvivesAReconnectThatCarriesItsId) {
    const auto device = open("engineer");
    const auto holder = simulator.lockHolder();
    const auto connections = simulator.connectionCount();
    const auto power = object<CommonModules::Relay_v1_0>(device, "power");
    simulator.stop();
    simulator.start();
    EXPECT_EQ(called(device, power->getSetMethod(true))->returnCode(), 0);
    EXPECT_EQ(simulator.connectionCount(), connections + 1);
    EXPECT_EQ(simulator.lockHolder(), holder);
    EXPECT_EQ(lockingUser([&] { open("guest"); }), "engineer");
}

TEST_F(Locking, ABatchStopsAtTheCallThatNeedsTheLock) {
    const auto holder = open("engineer");
    RawClient client(simulator.port());
    client.send(
        requestBytes(0, {call("power", "available"), call("power", "set", {1}), call("power", "type")}));
    EXPECT_EQ(client.receive(), joined({u32(0), block(joined({u32(1), u32(1001), text("engineer")})), u32(1),
                                        block({0, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0, 0})}));
    EXPECT_EQ(simulator.calls().back().error, 1001u);
}

} // namespace
