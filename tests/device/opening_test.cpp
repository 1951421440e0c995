#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <tavo/client/commonmodules/relay.h>
#include <tavo/client/device/device_factory.h>
#include <tavo/client/device/device_v1_0.h>
#include <tavo/client/device/private_v1_0.h>
#include <tavo/client/device/system_v1_0.h>
#include <tavo/client/wire/error.h>
#include <tests/device/opening_steps.h>
#include <tests/support/all_types.h>
#include <tests/support/appliance_server.h>
#include <tests/support/descriptors.h>
#include <tests/support/failure_text.h>

namespace {

using opening::buildsDevice;
using opening::checksKey;
using opening::locks;
using opening::Names;
using opening::unlocks;
using opening::operator+;
using support::Bytes;
using support::failureOf;
using support::joined;
using support::RawConnection;
using support::result;
using support::text;
using support::u32;
using TAVO::DeviceFactory;
using Descriptor = TAVO::Device_Factory_Structs::TavoDeviceDescriptor;

const Names buildsTree{"2.methods",     "2.type",  "2.methods",  "2.members",               //
                       "1.methods",     "1.type",  "1.version",  "1.methods",  "1.members", //
                       "0.rootMembers",                                                     //
                       "9.methods",     "9.type",  "9.version",  "9.methods",  "9.members", //
                       "4.methods",     "4.type",  "4.methods",  "4.members",               //
                       "12.methods",    "12.type", "12.version", "12.methods", "12.members"};

/// Two root members, "power" and "group", the second of a type that nobody knows and with a member.
class Opening : public testing::Test {
protected:
    Opening() {
        support::registerAllTypes();
        server.change([](support::FakeAppliance& fake) {
            support::addFixedObjects(fake);
            fake.add(9, "relay");
            fake.add(4, "novelty").member("inner", 12);
            fake.add(12, "cmosRelay");
            fake.object(0).method("rootMembers",
                                  result(0, joined({u32(2), text("power"), u32(9), text("group"), u32(4)})));
        });
    }

    std::shared_ptr<TAVO::Device> build(bool secure) {
        return DeviceFactory::buildDevice("127.0.0.1", server.port(), "alice", "secret", secure);
    }
    std::shared_ptr<TAVO::Device> query() {
        return DeviceFactory::queryDevice("127.0.0.1", server.port(), descriptor);
    }

    template <class Exception>
    std::string failureOfBuild(bool secure = false) {
        const auto failure = failureOf<Exception>([&] { build(secure); });
        server.awaitNoConnection();
        return failure;
    }

    support::FakeAppliance appliance;
    support::ApplianceServer server{appliance};
    Descriptor descriptor;
};

TEST_F(Opening, HasItsConstants) {
    EXPECT_EQ(DeviceFactory::DefaultPort, 6123);
    EXPECT_EQ(DeviceFactory::DefaultSecurePort, 6124);
    EXPECT_EQ(DeviceFactory::DeviceInstanceID, 0u);
    EXPECT_EQ(DeviceFactory::SystemInstanceID, 1u);
    EXPECT_EQ(DeviceFactory::PrivateInstanceID, 2u);
}

TEST_F(Opening, WithoutSecurityNeverAsksForTheKey) {
    const auto opened = build(false);
    EXPECT_EQ(server.callNames(), buildsDevice + locks + buildsTree);
    EXPECT_EQ(server.exchanges(), server.callNames().size());
    EXPECT_EQ(server.connections(), 1u);
}

TEST_F(Opening, WithSecurityChecksTheKeyBeforeItTakesTheLock) {
    const auto opened = build(true);
    EXPECT_EQ(server.callNames(), buildsDevice + checksKey + locks + buildsTree);
}

TEST_F(Opening, SendsTheLockIdFromTheLockOn) {
    const auto opened = build(true);
    const auto calls = server.calls();
    const auto locked = (buildsDevice + checksKey + locks).size();
    EXPECT_EQ(calls[locked - 1].parameters, joined({text("alice"), text("secret")}));
    for (std::size_t i = 0; i < calls.size(); ++i)
        EXPECT_EQ(calls[i].lockId, i < locked ? 0u : 0x51u) << i;
}

TEST_F(Opening, BuildsTheFixedObjectsAndTheTree) {
    const auto opened = build(true);
    EXPECT_EQ(opened->getDevice()->getInstanceID(), 0u);
    EXPECT_EQ(opened->getSystem()->getInstanceID(), 1u);
    EXPECT_EQ(opened->getPrivate()->getInstanceID(), 2u);
    EXPECT_EQ(opened->getSystem()->getFullName(), "system");

    ASSERT_EQ(opened->getChildren().size(), 2u);
    const auto power = opened->getChild("power");
    EXPECT_NE(std::dynamic_pointer_cast<CommonModules::Relay_v1_0>(power), nullptr);
    EXPECT_EQ(power->getFullName(), "power");
    EXPECT_EQ(power->getParent(), nullptr);
    const auto group = opened->getChild("group");
    ASSERT_NE(group, nullptr);
    const auto& groupObject = *group;
    EXPECT_EQ(typeid(groupObject), typeid(TAVO::Object_v1_0));
    const auto inner = group->getChild("inner");
    EXPECT_NE(std::dynamic_pointer_cast<CommonModules::CmosRelay_v1_0>(inner), nullptr);
    EXPECT_EQ(inner->getFullName(), "group.inner");
    EXPECT_EQ(inner->getParent(), group);
}

TEST_F(Opening, LeavesNothingBehindOnceTheDeviceIsReleased) {
    const auto before = support::openDescriptors();
    auto opened = build(true);
    const std::weak_ptr<TAVO::Device> watched = opened;
    const auto power = opened->getChild("power");
    opened.reset();
    server.awaitNoConnection();
    EXPECT_TRUE(watched.expired());
    EXPECT_EQ(server.callNames(), buildsDevice + checksKey + locks + buildsTree + unlocks);
    EXPECT_EQ(support::openDescriptors(), before);
}

TEST_F(Opening, ByQueryBuildsTheDeviceObjectAlone) {
    const auto queried = query();
    EXPECT_EQ(server.callNames(), buildsDevice + checksKey);
    EXPECT_NE(queried->getDevice(), nullptr);
    EXPECT_EQ(queried->getSystem(), nullptr);
    EXPECT_EQ(queried->getPrivate(), nullptr);
    EXPECT_TRUE(queried->getChildren().empty());
    EXPECT_EQ(descriptor, (Descriptor{false, false, server.port()}));
}

TEST_F(Opening, ByQueryReportsTheFlagsOfTheKey) {
    server.change([](support::FakeAppliance& fake) {
        fake.object(0).method("getKey", result(0, text("tavo-dev-key-010")));
    });
    query();
    EXPECT_EQ(descriptor, (Descriptor{true, false, server.port()}));
}

TEST_F(Opening, OfAQueriedDeviceTakesTheLockAndBuildsTheRest) {
    const auto queried = query();
    EXPECT_EQ(DeviceFactory::openDevice(queried, "bob", "pass"), queried);
    EXPECT_EQ(server.callNames(), buildsDevice + checksKey + locks + buildsTree);
    EXPECT_EQ(server.calls()[(buildsDevice + checksKey).size()].parameters,
              joined({text("bob"), text("pass")}));
    EXPECT_EQ(queried->getChildren().size(), 2u);
    queried->unlock();
    EXPECT_EQ(server.calls().back().parameters, joined({text("bob"), text("pass")}));
}

TEST_F(Opening, OfNoDeviceIsNoDevice) {
    EXPECT_EQ(DeviceFactory::openDevice(nullptr, "bob", "pass"), nullptr);
}

// Failures.

TEST_F(Opening, EndsWhenTheKeyIsNotKnownAndNeverAsksForTheLock) {
    server.change([](support::FakeAppliance& fake) {
        fake.object(0).method("getKey", result(0, text("tavo-dev-key-00")));
    });
    EXPECT_EQ(failureOfBuild<TAVO::TAVOKeyError>(true), "TAVO authentication key not matched!");
    EXPECT_EQ(server.callNames(), buildsDevice + checksKey);
    EXPECT_EQ(failureOf<TAVO::TAVOKeyError>([&] { query(); }), "Target is not a recognized TAVO server!");
    EXPECT_EQ(server.callNames(), buildsDevice + checksKey + buildsDevice + checksKey);
    EXPECT_EQ(descriptor, Descriptor());
    EXPECT_NO_THROW(build(false));
}

TEST_F(Opening, EndsWhenAnotherUserHoldsTheLockAndDoesNotUnlock) {
    server.change([](support::FakeAppliance& fake) {
        fake.object(0).method("lock", [](const Bytes&) -> Bytes { throw support::DeviceFault{1001, "bob"}; });
    });
    EXPECT_EQ(failureOfBuild<TAVO::LockError>(), "The device is locked by bob");
    EXPECT_EQ(server.callNames(), buildsDevice + locks);
}

TEST_F(Opening, NeedsFixedObjectsOfTheRightClass) {
    const auto answerType = [&](std::uint32_t id, const std::string& type) {
        server.change(
            [&](support::FakeAppliance& fake) { fake.object(id).method("type", result(0, text(type))); });
    };
    answerType(1, "private");
    EXPECT_EQ(failureOfBuild<TAVO::SpecificationError>(), "system object not found.");
    EXPECT_EQ(server.callNames().back(), "0.unlock");
    answerType(2, "novelty");
    EXPECT_EQ(failureOfBuild<TAVO::SpecificationError>(), "private object not found.");
    EXPECT_EQ(server.callNames().back(), "0.unlock");
    answerType(0, "relay");
    EXPECT_EQ(failureOfBuild<TAVO::SpecificationError>(), "device object not found.");
    EXPECT_EQ(server.callNames().back(), "0.members");
    EXPECT_EQ(failureOf<TAVO::SpecificationError>([&] { query(); }), "device object not found.");
}

TEST_F(Opening, RefusesVersionsThatItDoesNotKnow) {
    server.change([](support::FakeAppliance& fake) { fake.object(1).version(1, 2, 0xFFFFFFFF); });
    EXPECT_EQ(failureOfBuild<TAVO::SpecificationError>(), "Unknown System object version: 1.2");
    server.change([](support::FakeAppliance& fake) { fake.object(0).version(1, 1, 0xFFFFFFFF); });
    EXPECT_EQ(failureOfBuild<TAVO::SpecificationError>(), "Unknown Device object version: 1.1");
}

TEST_F(Opening, RefusesATreeThatIsNestedTooDeeply) {
    server.change([](support::FakeAppliance& fake) { fake.object(12).member("again", 4); });
    const auto failure = failureOfBuild<TAVO::Error>();
    EXPECT_EQ(failure.substr(0, 69), "Object tree is nested too deeply: group.inner.again.inner.again.inner");
    EXPECT_EQ(server.callNames().back(), "0.unlock");
}

struct Step {
    std::string name;
    support::ApplianceServer::Fault fault;
    /// The unlock goes over a new connection, whose key is checked first.
    bool endsConnection;
};

void PrintTo(const Step& step, std::ostream* out) { *out << step.name; }

class OpeningThatFails : public Opening, public testing::WithParamInterface<Step> {};

TEST_P(OpeningThatFails, AtAnyStepUnlocksWhatItHadLockedAndClosesTheConnection) {
    const auto steps = buildsDevice + checksKey + locks + buildsTree;
    const auto locked = (buildsDevice + checksKey + locks).size();
    const auto before = support::openDescriptors();
    const auto end = GetParam().endsConnection ? checksKey + unlocks : unlocks;
    for (std::size_t failing = 1; failing <= steps.size(); ++failing) {
        server.change([](support::FakeAppliance& fake) { fake.forgetCalls(); });
        server.setFault(failing, GetParam().fault);
        EXPECT_THROW(build(true), TAVO::Error) << failing;
        server.awaitNoConnection();
        const Names done(steps.begin(), steps.begin() + static_cast<std::ptrdiff_t>(failing));
        EXPECT_EQ(server.callNames(), failing > locked ? done + end : done) << failing;
        EXPECT_EQ(server.calls().back().lockId, failing > locked ? 0x51u : 0u) << failing;
        EXPECT_EQ(support::openDescriptors(), before) << failing;
        server.setFault(failing, nullptr);
    }
    EXPECT_NO_THROW(build(true));
}

INSTANTIATE_TEST_SUITE_P(
    Faults, OpeningThatFails,
    testing::Values(Step{"DeviceError",
                         [](RawConnection& connection, const Bytes&) {
                             connection.write(support::errorReply(1002, "no"));
                         },
                         false},
                    Step{"Close", [](RawConnection& connection, const Bytes&) { connection.close(); }, true},
                    Step{"Reset", [](RawConnection& connection, const Bytes&) { connection.reset(); }, true},
                    Step{"ShortResult",
                         [](RawConnection& connection, const Bytes&) {
                             connection.write(support::replyWith({{0, 0}}));
                         },
                         false},
                    Step{"Cut",
                         [](RawConnection& connection, const Bytes& reply) {
                             connection.write(Bytes(reply.begin(), reply.end() - 1));
                             connection.close();
                         },
                         true}),
    [](const auto& tested) { return tested.param.name; });

} // namespace
