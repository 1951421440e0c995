#include <tests/device/opened_device.h>

namespace {

using support::Bytes;
using support::failureOf;
using support::joined;
using support::result;
using support::text;
using support::u32;
using TAVO::Error;

/// What comes of a return code other than 0 in what opens and closes a device.
class ReturnCodeOfOpening : public support::OpenedDevice {
protected:
    std::string failureOfBuild(bool secure) {
        const auto failure = failureOf<Error>([&] { build(secure); });
        server.awaitNoConnection();
        return failure;
    }
};

TEST_F(ReturnCodeOfOpening, ToLockEndsItWithoutALock) {
    answer("lock", result(0x1A, u32(0x77)));
    EXPECT_EQ(failureOfBuild(false), "Error executing lock() method on device: 1a");
    EXPECT_EQ(callNames().back(), "0.lock");
}

TEST_F(ReturnCodeOfOpening, ToGetKeyEndsItHoweverGoodTheKey) {
    answer("getKey", result(0xFFFFFFF6, text("tavo-dev-key-000")));
    const std::string refusal = "Error executing getKey() method on device: fffffff6";
    EXPECT_EQ(failureOfBuild(true), refusal);
    EXPECT_EQ(callNames().back(), "0.getKey");
    EXPECT_EQ(failureOf<Error>([&] { query(); }), refusal);
    EXPECT_EQ(callNames().back(), "0.getKey");
}

TEST_F(ReturnCodeOfOpening, ToRootMembersEndsItAndGivesTheLockBack) {
    answer("rootMembers", result(2, joined({u32(1), text("power"), u32(9)})));
    EXPECT_EQ(failureOfBuild(false), "Error executing rootMembers() method on device: 2");
    const auto names = callNames();
    EXPECT_EQ((Names{names.end() - 2, names.end()}), (Names{"0.rootMembers", "0.unlock"}));
}

TEST_F(ReturnCodeOfOpening, WithNothingBehindItIsAShortResult) {
    answer("lock", result(0x1A));
    EXPECT_EQ(failureOf<TAVO::SpecificationError>([&] { build(); }),
              "Error decoding TAVOX return values in call to device.lock: Could not read Result from device "
              "for method: device.lock");
}

TEST_F(ReturnCodeOfOpening, ToALaterLockKeepsTheLockThatIsHeld) {
    auto device = build();
    answer("lock", result(3, u32(0x99)));
    EXPECT_EQ(failureOf<Error>([&] { device->relock(); }), "Error executing lock() method on device: 3");
    device->getDevice()->type();
    EXPECT_EQ(server.calls().back().lockId, 0x51u);
    device.reset();
    server.awaitNoConnection();
    EXPECT_EQ(server.calls().back().method, "unlock");
    EXPECT_EQ(server.calls().back().lockId, 0x51u);
}

TEST_F(ReturnCodeOfOpening, ToALaterGetKeyKeepsTheKeyThatIsKnown) {
    const auto device = build(true);
    answer("getKey", result(1, text("tavo-dev-key-110")));
    EXPECT_EQ(failureOf<Error>([&] { device->getKey(); }), "Error executing getKey() method on device: 1");
    bool first = true, second = true;
    EXPECT_TRUE(device->checkTavoKey(first, second));
    EXPECT_FALSE(first);
    EXPECT_FALSE(second);
}

TEST_F(ReturnCodeOfOpening, ToUnlockIsNotLookedAt) {
    auto device = build();
    answer("unlock", result(0x2A));
    device->unlock();
    device->getDevice()->type();
    EXPECT_EQ(server.calls().back().lockId, 0u);
    forget();
    device->unlock();
    device.reset();
    server.awaitNoConnection();
    EXPECT_EQ(callNames(), Names{});
}

} // namespace
