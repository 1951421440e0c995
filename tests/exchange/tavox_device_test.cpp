#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <tavo/client/device/core_objects.h>
#include <tavo/client/device/device_factory.h>
#include <tavo/client/device/device_v1_0.h>
#include <tavo/client/exchange/server_keys.h>
#include <tavo/client/exchange/tavox_device.h>
#include <tavo/client/object/multicall_queue.h>
#include <tavo/client/wire/error.h>
#include <tests/support/appliance_server.h>
#include <tests/support/failure_text.h>
#include <tests/support/system_error.h>

namespace {

using support::block;
using support::Bytes;
using support::failureOf;
using support::FakeCall;
using support::joined;
using support::RawConnection;
using support::result;
using support::text;
using support::u32;
using TAVO::DeviceFactory;
using TAVO::TAVOXDevice;
using Names = std::vector<std::string>;

/// A TAVOXDevice whose "device" object is built, on a server with the fixed objects.
class TavoxDevice : public testing::Test {
protected:
    TavoxDevice() {
        TAVO::CoreObjects::registerCoreObjects();
        server.change(support::addFixedObjects);
        device = std::make_shared<TAVOXDevice>("127.0.0.1", server.port(), "alice", "secret", false);
        device->setDevice(std::dynamic_pointer_cast<TAVO::Device_v1_0>(
            TAVO::ObjectFactory::buildObject(device, "device", DeviceFactory::DeviceInstanceID, nullptr)));
        atStart = server.calls().size();
    }

    /// The calls since the device was ready.
    std::vector<FakeCall> calls() const {
        const auto all = server.calls();
        return {all.begin() + static_cast<std::ptrdiff_t>(atStart), all.end()};
    }
    Names callNames() const {
        const auto all = server.callNames();
        return {all.begin() + static_cast<std::ptrdiff_t>(atStart), all.end()};
    }

    /// What the "device" object answers to a method from now on.
    template <class Answer>
    void answer(const std::string& method, Answer answer) {
        server.change([&](support::FakeAppliance& fake) { fake.object(0).method(method, answer); });
    }
    void answerKey(const Bytes& key) { answer("getKey", result(0, block(key))); }

    bool keyMatches(bool& first, bool& second) {
        device->getKey();
        return device->checkTavoKey(first, second);
    }

    support::FakeAppliance appliance;
    support::ApplianceServer server{appliance};
    std::shared_ptr<TAVOXDevice> device;
    std::size_t atStart = 0;
};

const Bytes credentials = joined({text("alice"), text("secret")});

TEST(TavoxDeviceConnection, IsMadeByTheConstructor) {
    support::GuardedListener listener;
    const TAVOXDevice device("127.0.0.1", listener.port(), "", "", true);
    EXPECT_TRUE(listener.hasWaitingClient());
}

TEST(TavoxDeviceConnection, IsReportedWhenItCannotBeMade) {
    support::GuardedListener listener;
    listener.stop();
    EXPECT_EQ(
        failureOf<TAVO::NetworkError>([&] { TAVOXDevice("127.0.0.1", listener.port(), "", "", false); }),
        "Could not connect to socket to: 127.0.0.1 port " + listener.portText() +
            support::errorCodeText(support::SystemError::connectionRefused));
    EXPECT_NE(failureOf<TAVO::NetworkError>([] {
                  TAVOXDevice("127.0.0.1", -1, "", "", false);
              }).find("127.0.0.1 port -1[ErrorCode "),
              std::string::npos);
}

TEST(TavoxDeviceConnection, NeedsTheDeviceObjectForWhatItAsks) {
    support::GuardedListener listener;
    TAVOXDevice device("127.0.0.1", listener.port(), "", "", false);
    const std::string missing = "device object not found.";
    EXPECT_EQ(failureOf<TAVO::SpecificationError>([&] { device.getKey(); }), missing);
    EXPECT_EQ(failureOf<TAVO::SpecificationError>([&] { device.relock(); }), missing);
    EXPECT_NO_THROW(device.unlock());
}

TEST_F(TavoxDevice, IsANamelessRoot) {
    EXPECT_EQ(device->getName(), "");
    EXPECT_EQ(device->getFullName(), "");
    EXPECT_EQ(device->getParent(), nullptr);
}

TEST_F(TavoxDevice, HasNoPacketSize) {
    EXPECT_EQ(failureOf<std::runtime_error>([&] { device->getMaxPacketSize(); }),
              "called getMaxPacketSize and don't have implementation");
}

TEST_F(TavoxDevice, MakesOneExchangeOfAQueueAndLeavesTheQueueAsItWas) {
    const auto queue = std::make_shared<TAVO::MulticallQueue>();
    const auto type = device->getDevice()->getTypeMethod();
    const auto version = device->getDevice()->getVersionMethod();
    for (const std::shared_ptr<TAVO::Method>& method :
         {std::shared_ptr<TAVO::Method>(type), std::shared_ptr<TAVO::Method>(version),
          std::shared_ptr<TAVO::Method>(type)})
        queue->add(method);
    const auto before = server.exchanges();
    device->multicall(queue);
    EXPECT_EQ(server.exchanges(), before + 1);
    EXPECT_EQ(callNames(), (Names{"0.type", "0.version", "0.type"}));
    EXPECT_EQ(queue->getMethods().size(), 3u);
    EXPECT_EQ(type->value().type, "device");
    device->multicall(queue);
    EXPECT_EQ(server.exchanges(), before + 2);
}

TEST_F(TavoxDevice, RefusesNullMethods) {
    const std::string refusal = "NULL method found in multicall queue";
    EXPECT_EQ(failureOf<TAVO::Error>([&] { device->call(nullptr); }), refusal);
    EXPECT_EQ(failureOf<TAVO::Error>([&] { device->callMethods({nullptr}); }), refusal);
    EXPECT_NO_THROW(device->callMethods({}));
}

TEST_F(TavoxDevice, RefusesAnEmptyPointerToAQueue) {
    EXPECT_EQ(failureOf<TAVO::Error>([&] { device->multicall(nullptr); }), "NULL multicall queue");
    EXPECT_TRUE(calls().empty());
}

// The lock.

TEST_F(TavoxDevice, SendsItsCredentialsAndThenTheLockIdWithEveryRequest) {
    device->relock();
    device->getDevice()->type();
    EXPECT_EQ(calls(), (std::vector<FakeCall>{{0, 0, "lock", credentials}, {0x51, 0, "type", {}}}));
}

TEST_F(TavoxDevice, LocksAgainWithTheSameCredentialsAndTheIdItHolds) {
    device->relock();
    answer("lock", result(0, u32(0x52)));
    device->relock();
    device->getDevice()->type();
    EXPECT_EQ(calls(),
              (std::vector<FakeCall>{
                  {0, 0, "lock", credentials}, {0x51, 0, "lock", credentials}, {0x52, 0, "type", {}}}));
}

TEST_F(TavoxDevice, UnlocksOnceHoweverOftenItIsAsked) {
    device->unlock();
    device->relock();
    device->unlock();
    device->unlock();
    device->getDevice()->type();
    EXPECT_EQ(calls(),
              (std::vector<FakeCall>{
                  {0, 0, "lock", credentials}, {0x51, 0, "unlock", credentials}, {0, 0, "type", {}}}));
}

TEST_F(TavoxDevice, StaysLockedWhenUnlockingFails) {
    device->relock();
    answer("unlock", [](const Bytes&) -> Bytes { throw support::DeviceFault{1004, "busy"}; });
    EXPECT_EQ(failureOf<TAVO::SpecificationError>([&] { device->unlock(); }), "busy");
    answer("unlock", result(0));
    device->unlock();
    EXPECT_EQ(callNames(), (Names{"0.lock", "0.unlock", "0.unlock"}));
}

TEST_F(TavoxDevice, IsNotLockedByALockIdOfZero) {
    answer("lock", result(0, u32(0)));
    device->relock();
    device->unlock();
    device.reset();
    server.awaitNoConnection();
    EXPECT_EQ(callNames(), Names{"0.lock"});
}

TEST_F(TavoxDevice, NamesTheUserWhoHoldsTheLock) {
    answer("lock", [](const Bytes&) -> Bytes { throw support::DeviceFault{1001, "bob"}; });
    EXPECT_EQ(failureOf<TAVO::LockError>([&] { device->relock(); }), "The device is locked by bob");
    device.reset();
    server.awaitNoConnection();
    EXPECT_EQ(callNames(), Names{"0.lock"});
}

// The end.

TEST_F(TavoxDevice, UnlocksAndClosesWhenItIsDestroyed) {
    device->relock();
    device.reset();
    server.awaitNoConnection();
    EXPECT_EQ(calls().back(), (FakeCall{0x51, 0, "unlock", credentials}));
}

TEST_F(TavoxDevice, ClosesWithoutAWordWhenItIsNotLocked) {
    device.reset();
    server.awaitNoConnection();
    EXPECT_EQ(callNames(), Names{});
}

TEST_F(TavoxDevice, SwallowsWhatGoesWrongWhenItIsDestroyed) {
    device->relock();
    answer("unlock", [](const Bytes&) -> Bytes { throw support::DeviceFault{1000, "broken"}; });
    EXPECT_NO_THROW(device.reset());
    EXPECT_EQ(callNames().back(), "0.unlock");
}

TEST_F(TavoxDevice, SwallowsThatThePeerIsGoneWhenItIsDestroyed) {
    device->relock();
    server.stop();
    EXPECT_NO_THROW(device.reset());
}

TEST_F(TavoxDevice, SwallowsThatTheDeviceObjectIsGoneWhenItIsDestroyed) {
    device->relock();
    device->setDevice(nullptr);
    EXPECT_NO_THROW(device.reset());
    server.awaitNoConnection();
    EXPECT_EQ(callNames(), Names{"0.lock"});
}

// The key.

TEST_F(TavoxDevice, KnowsNoKeyBeforeItHasAsked) {
    bool first = true, second = true;
    EXPECT_FALSE(device->checkTavoKey(first, second));
    EXPECT_FALSE(first);
    EXPECT_FALSE(second);
}

TEST_F(TavoxDevice, ReportsTheFlagsOfEachKnownKey) {
    ASSERT_EQ(TAVO::serverKeys().size(), 4u);
    for (int entry = 0; entry < 4; ++entry) {
        const auto& known = TAVO::serverKeys()[static_cast<std::size_t>(entry)];
        answerKey(Bytes(known.key.begin(), known.key.end()));
        bool first = entry < 2, second = entry % 2 == 0;
        EXPECT_TRUE(keyMatches(first, second));
        EXPECT_EQ(first, entry >= 2);
        EXPECT_EQ(second, entry % 2 == 1);
    }
}

TEST_F(TavoxDevice, MatchesNoKeyThatIsShorterLongerOrDifferent) {
    const auto& known = TAVO::serverKeys()[3].key;
    const Bytes right(known.begin(), known.end());
    auto longer = right;
    longer.push_back(0);
    auto differentAtEnd = right;
    differentAtEnd.back() ^= 0x80;
    auto differentAtStart = right;
    differentAtStart.front() ^= 0x80;
    for (const auto& key : {Bytes(right.begin(), right.end() - 1), longer, differentAtEnd, differentAtStart,
                            Bytes(), Bytes(16, 0), Bytes(1000, 7)}) {
        answerKey(key);
        bool first = true, second = true;
        EXPECT_FALSE(keyMatches(first, second)) << key.size();
        EXPECT_FALSE(first);
        EXPECT_FALSE(second);
    }
}

// The login.

TEST_F(TavoxDevice, SendsTheUsersNameAloneAndReportsFalse) {
    EXPECT_FALSE(DeviceFactory::authenticate(device, "carol", "her password"));
    EXPECT_EQ(calls(), (std::vector<FakeCall>{{0, 0, "login", text("carol")}}));
}

TEST_F(TavoxDevice, LocksWithTheLockCredentialsAfterALogin) {
    DeviceFactory::authenticate(device, "carol", "her password");
    device->relock();
    EXPECT_EQ(calls().back().parameters, credentials);
}

TEST_F(TavoxDevice, TurnsEveryErrorOfALoginIntoARefusal) {
    const std::string refusal = "Server cannot authenticate user login!";
    for (const std::uint32_t code : {1013u, 1000u, 1001u, 1002u, 1006u, 1010u}) {
        answer("login", [code](const Bytes&) -> Bytes { throw support::DeviceFault{code, "no"}; });
        EXPECT_EQ(failureOf<TAVO::TAVOLoginError>([&] { DeviceFactory::authenticate(device, "carol", ""); }),
                  refusal);
    }
    server.failNext([](RawConnection& connection, const Bytes&) { connection.close(); });
    EXPECT_EQ(failureOf<TAVO::TAVOLoginError>([&] { DeviceFactory::authenticate(device, "carol", ""); }),
              refusal);
}

TEST(Authentication, OfNoDeviceIsFalse) { EXPECT_FALSE(DeviceFactory::authenticate(nullptr, "carol", "")); }

} // namespace
