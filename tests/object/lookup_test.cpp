#include <memory>
#include <string>

#include <gtest/gtest.h>

#include <tavo/client/commonmodules/com.h>
#include <tavo/client/commonmodules/common_modules_objects.h>
#include <tavo/client/commonmodules/relay.h>
#include <tavo/client/object/object_factory.h>
#include <tavo/client/wire/error.h>
#include <tests/support/failure_text.h>
#include <tests/support/fake_device.h>

namespace {

using CommonModules::Com_v1_0;
using CommonModules::Relay_v1_0;
using support::failureOf;
using TAVO::Container;
using TAVO::SpecificationError;

/// Below the device: "bench" with the relay "lamp" and the odd "a.b", and "port".
class LookUp : public testing::Test {
protected:
    LookUp() {
        CommonModules::CommonModulesObjects::registerCoreObjects();
        device->appliance.add(5, "rack").member("lamp", 6).member("a.b", 7);
        device->appliance.add(6, "relay");
        device->appliance.add(7, "rack").member("c", 8);
        device->appliance.add(8, "novelty");
        device->appliance.add(9, "com");
        device->addChild(TAVO::ObjectFactory::buildObject(device, "bench", 5, nullptr));
        device->addChild(TAVO::ObjectFactory::buildObject(device, "port", 9, nullptr));
        device->appliance.forgetCalls();
    }

    template <class Node>
    std::string refusalOf(const std::string& path) {
        return failureOf<SpecificationError>([&] { device->get<Node>(path); });
    }

    std::shared_ptr<support::FakeDevice> device = std::make_shared<support::FakeDevice>();
};

TEST_F(LookUp, FollowsAPath) {
    EXPECT_EQ(device->get<Relay_v1_0>("bench.lamp")->getInstanceID(), 6u);
    EXPECT_EQ(device->get<Container>("bench")->getName(), "bench");
    EXPECT_EQ(device->getChild("bench")->get<Relay_v1_0>("lamp")->getFullName(), "bench.lamp");
    EXPECT_EQ(device->find("bench.lamp"), device->getChild("bench")->getChild("lamp"));
    EXPECT_EQ(device->appliance.exchanges(), 0u) << "the device is asked for nothing";
}

TEST_F(LookUp, FollowsNamesThatHoldADot) {
    EXPECT_EQ(device->get<TAVO::Object_v1_0>("bench.a.b")->getInstanceID(), 7u);
    EXPECT_EQ(device->get<TAVO::Object_v1_0>("bench.a.b.c")->getInstanceID(), 8u);
}

TEST_F(LookUp, FindsNothingWhereThereIsNothing) {
    for (const auto* path : {"", ".", "bench.", ".bench", "bench..lamp", "lamp", "bench.lamp.x", "bench.a"})
        EXPECT_EQ(device->find(path), nullptr) << path;
}

TEST_F(LookUp, TellsWhatIsThereInstead) {
    EXPECT_EQ(refusalOf<Relay_v1_0>("bnech.lamp"),
              "There is no object bnech.lamp: the device has bench, port");
    EXPECT_EQ(refusalOf<Relay_v1_0>("bench.lmap"), "There is no object bench.lmap: bench has a.b, lamp");
    EXPECT_EQ(refusalOf<Relay_v1_0>("bench.a.b.d"), "There is no object bench.a.b.d: bench.a.b has c");
    EXPECT_EQ(refusalOf<Relay_v1_0>("port.x"), "There is no object port.x: port has no members");
    EXPECT_EQ(failureOf<SpecificationError>([&] { device->getChild("bench")->get<Relay_v1_0>("x"); }),
              "There is no object x: bench has a.b, lamp");
}

TEST_F(LookUp, TellsTheClassThatIsThere) {
    EXPECT_EQ(refusalOf<Com_v1_0>("bench.lamp"),
              "bench.lamp is a CommonModules::Relay_v1_0, no CommonModules::Com_v1_0");
}

TEST_F(LookUp, TellsThatNothingServedTheType) {
    EXPECT_EQ(refusalOf<Relay_v1_0>("bench.a.b.c"),
              "bench.a.b.c is a plain object of type novelty, no CommonModules::Relay_v1_0: its type had no "
              "factory when the device was opened; call "
              "CommonModules::CommonModulesObjects::registerCoreObjects() before");
}

TEST_F(LookUp, ListsAFewOfManyMembers) {
    for (int i = 100; i < 130; ++i)
        device->addChild(std::make_shared<Container>("x" + std::to_string(i), nullptr));
    const auto refusal = refusalOf<Relay_v1_0>("lamp");
    EXPECT_TRUE(refusal.ends_with("x116, x117 and 12 more")) << refusal;
}

TEST_F(LookUp, KnowsTheTypeThatAnObjectWasBuiltFor) {
    EXPECT_EQ(device->get<TAVO::Object_v1_0>("bench.lamp")->knownType(), "relay");
    EXPECT_EQ(device->get<TAVO::Object_v1_0>("bench.a.b.c")->knownType(), "novelty");
    namespace base = TAVO::TAVOXTranscode::base_v1_0;
    EXPECT_EQ(TAVO::Object_v1_0(device, "x", 6, nullptr, base::encoders(), base::decoders()).knownType(), "");
}

} // namespace
