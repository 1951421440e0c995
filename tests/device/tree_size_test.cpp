#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <tavo/client/device/core_objects.h>
#include <tavo/client/device/device_factory.h>
#include <tavo/client/device/device_v1_0.h>
#include <tavo/client/wire/error.h>
#include <tests/support/failure_text.h>
#include <tests/support/fake_device.h>

namespace {

using support::failureOf;
using support::joined;
using support::result;
using support::text;
using support::u32;
using Names = std::vector<std::string>;

/// A device with 10000 objects in all: members of each fixed object, and two root members.
class TreeSize : public testing::Test {
protected:
    static constexpr std::uint32_t leaf = 50;

    TreeSize() {
        TAVO::CoreObjects::registerCoreObjects();
        support::addFixedObjects(fake);
        fake.add(leaf, "novelty");
        addMembers(fake.object(0), 2000);
        addMembers(fake.object(1), 2000);
        addMembers(fake.object(2), 2000);
        addMembers(fake.add(5, "novelty"), 1999);
        addMembers(fake.add(6, "novelty"), 1999);
        fake.object(0).method("rootMembers",
                              result(0, joined({u32(2), text("a"), u32(5), text("b"), u32(6)})));
        device->setDevice(std::dynamic_pointer_cast<TAVO::Device_v1_0>(
            TAVO::ObjectFactory::buildObject(device, "device", 0, nullptr)));
    }

    static void addMembers(support::FakeObject& object, int count) {
        for (int number = 1; number <= count; ++number)
            object.member("m" + std::to_string(number), leaf);
    }

    void open() { TAVO::DeviceFactory::openDevice(device, "carol", "secret"); }

    std::shared_ptr<support::FakeDevice> device = std::make_shared<support::FakeDevice>();
    support::FakeAppliance& fake = device->appliance;
};

TEST_F(TreeSize, MayBeTenThousandObjectsOfTheWholeDevice) {
    open();
    EXPECT_EQ(device->getChild("b")->getChildren().size(), 1999u);
    EXPECT_EQ(device->actions, Names{"lock carol"});
}

TEST_F(TreeSize, BeyondThatEndsTheOpeningAndTheLockIsGivenBack) {
    fake.object(6).member("more", leaf);
    EXPECT_EQ(failureOf<TAVO::Error>([&] { open(); }), "Object tree has too many objects: b.more");
    EXPECT_EQ(device->actions, (Names{"lock carol", "unlock"}));
}

} // namespace
