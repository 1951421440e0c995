#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <tavo/client/device/core_objects.h>
#include <tavo/client/device/device_factory.h>
#include <tavo/client/device/device_v1_0.h>
#include <tavo/client/device/private_v1_0.h>
#include <tavo/client/device/system_v1_0.h>
#include <tavo/client/wire/error.h>
#include <tests/support/failure_text.h>
#include <tests/support/fake_device.h>

namespace {

using support::Bytes;
using support::failureOf;
using support::joined;
using support::result;
using support::text;
using support::u32;
using Names = std::vector<std::string>;

class DeviceRoot : public testing::Test {
protected:
    DeviceRoot() {
        TAVO::CoreObjects::registerCoreObjects();
        support::addFixedObjects(appliance);
    }

    template <class Proxy>
    std::shared_ptr<Proxy> build(const std::string& name, std::uint32_t id) {
        return std::dynamic_pointer_cast<Proxy>(TAVO::ObjectFactory::buildObject(root, name, id, nullptr));
    }
    std::shared_ptr<TAVO::Device_v1_0> deviceObject() { return build<TAVO::Device_v1_0>("device", 0); }
    std::shared_ptr<TAVO::System_v1_0> systemObject() { return build<TAVO::System_v1_0>("system", 1); }

    /// The parameters that the executed method sent.
    Bytes sentBy(const std::shared_ptr<TAVO::Method>& method) {
        root->call(method);
        EXPECT_EQ(appliance.calls().back().method, method->getName());
        return appliance.calls().back().parameters;
    }

    std::shared_ptr<support::FakeDevice> root = std::make_shared<support::FakeDevice>();
    support::FakeAppliance& appliance = root->appliance;
};

TEST_F(DeviceRoot, StartsWithoutProxiesAndChildren) {
    EXPECT_EQ(root->getDevice(), nullptr);
    EXPECT_EQ(root->getSystem(), nullptr);
    EXPECT_EQ(root->getPrivate(), nullptr);
    EXPECT_TRUE(root->getChildren().empty());
    EXPECT_EQ(root->getName(), "");
    EXPECT_EQ(root->getFullName(), "");
    EXPECT_EQ(root->getParent(), nullptr);
}

TEST_F(DeviceRoot, KeepsTheLaterOfTwoProxies) {
    auto earlier = deviceObject();
    const std::weak_ptr<TAVO::Device_v1_0> released = earlier;
    root->setDevice(std::move(earlier));
    const auto later = deviceObject();
    root->setDevice(later);
    EXPECT_EQ(root->getDevice(), later);
    EXPECT_TRUE(released.expired());

    root->setSystem(systemObject());
    const auto system = systemObject();
    root->setSystem(system);
    EXPECT_EQ(root->getSystem(), system);

    root->setPrivate(build<TAVO::Private_v1_0>("private", 2));
    root->setPrivate(nullptr);
    EXPECT_EQ(root->getPrivate(), nullptr);
    EXPECT_TRUE(root->getChildren().empty());
}

TEST_F(DeviceRoot, LocksAgainByExactlyWhatLocks) {
    root->relock();
    EXPECT_EQ(root->actions, Names{"lock"});
}

TEST_F(DeviceRoot, OfAnyClassDecidesWhatALoginReports) {
    EXPECT_TRUE(TAVO::DeviceFactory::authenticate(root, "carol", "secret"));
    EXPECT_EQ(root->actions, Names{"login carol"});
}

TEST_F(DeviceRoot, OfAnyClassCanBeOpened) {
    root->setDevice(deviceObject());
    EXPECT_EQ(TAVO::DeviceFactory::openDevice(root, "carol", "secret"), root);
    EXPECT_EQ(root->actions, Names{"lock carol"});
    EXPECT_NE(root->getSystem(), nullptr);
}

// The "device" object.

TEST_F(DeviceRoot, SendsTheArgumentsOfTheDeviceMethodsInOrder) {
    appliance.object(0).method("CHAPRespond", result(0, text("welcome")));
    const auto object = deviceObject();
    EXPECT_EQ(sentBy(object->getLockMethod("ab", "c")), joined({text("ab"), text("c")}));
    EXPECT_EQ(sentBy(object->getUnlockMethod("a", "bc")), joined({text("a"), text("bc")}));
    EXPECT_EQ(sentBy(object->getLoginMethod("ab")), text("ab"));
    EXPECT_EQ(sentBy(object->getGetKeyMethod()), Bytes{});
    EXPECT_EQ(sentBy(object->getRootMembersMethod()), Bytes{});
    const auto response = object->getCHAPResponseMethod({1, 2, 3}, 99);
    EXPECT_EQ(sentBy(response), (Bytes{0, 0, 0, 3, 1, 2, 3}));
    EXPECT_EQ(response->value(), (Bytes{'w', 'e', 'l', 'c', 'o', 'm', 'e'}));
}

TEST_F(DeviceRoot, ReadsTheIdentityOfADevice) {
    appliance.object(0).method("info", result(0, joined({text("bench"), u32(1), u32(2), u32(0xFFFFFFFF),
                                                         u32(1), text("boot"), u32(3), u32(4), u32(5), u32(1),
                                                         text("a"), text("b"), text("c"), text("d")})));
    const auto object = deviceObject();
    const auto method = object->getInfoMethod();
    root->call(method);
    const TAVO::DeviceInfo info(method->value());
    EXPECT_EQ(info.name, "bench");
    EXPECT_EQ(info.version.text, "1.2");
    ASSERT_EQ(info.firmware.size(), 1u);
    EXPECT_EQ(info.firmware[0].name, "boot");
    EXPECT_EQ(info.firmware[0].version.text, "3.4.5");
    ASSERT_EQ(info.boards.size(), 1u);
    TAVO::BoardInfo board;
    board.field1 = "a", board.field2 = "b", board.field3 = "c", board.field4 = "d";
    EXPECT_EQ(info.boards[0], board);
}

TEST_F(DeviceRoot, HasAnEmptyIdentityByDefault) {
    EXPECT_EQ(TAVO::DeviceInfo().version.text, "0.0.0");
    EXPECT_EQ(TAVO::FirmwareInfo().version.text, "0.0.0");
    EXPECT_TRUE(TAVO::DeviceInfo().firmware.empty());
}

TEST_F(DeviceRoot, CannotAskForAPacketSize) {
    EXPECT_EQ(failureOf<TAVO::SpecificationError>([&] { deviceObject()->getMaxPacketSizeMethod(); }),
              "Could not find Method ID for Method: getMaxPacketSize");
    appliance.object(0).method("getMaxPacketSize");
    EXPECT_EQ(failureOf<TAVO::SpecificationError>([&] { deviceObject()->getMaxPacketSizeMethod(); }),
              "Could not find Method Encoder for Method: getMaxPacketSize");
}

TEST_F(DeviceRoot, CannotBuildMethodsThatTheDeviceDoesNotList) {
    EXPECT_EQ(failureOf<TAVO::SpecificationError>([&] { deviceObject()->getInfoMethod(); }),
              "Could not find Method ID for Method: info");
    EXPECT_EQ(failureOf<TAVO::SpecificationError>([&] { systemObject()->getTimeGetMethod(); }),
              "Could not find Method ID for Method: timeGet");
}

// The "system" object.

TEST_F(DeviceRoot, SendsTheArgumentsOfTheSystemMethodsUnchanged) {
    for (const auto* name : {"deviceReset", "firmwareUpdate", "timeSet", "usleep", "uwait"})
        appliance.object(1).method(name);
    const auto object = systemObject();
    EXPECT_EQ(sentBy(object->getUSleepMethod(0)), (Bytes{0, 0, 0, 0}));
    EXPECT_EQ(sentBy(object->getUSleepMethod(1000)), (Bytes{0, 0, 3, 0xE8}));
    EXPECT_EQ(sentBy(object->getUSleepMethod(-1)), (Bytes{0xFF, 0xFF, 0xFF, 0xFF}));
    EXPECT_EQ(sentBy(object->getUWaitMethod(-2147483647 - 1)), (Bytes{0x80, 0, 0, 0}));
    EXPECT_EQ(sentBy(object->getTimeSetMethod(-1)), Bytes(8, 0xFF));
    EXPECT_EQ(sentBy(object->getDeviceResetMethod()), Bytes{});

    std::vector<unsigned char> image{9, 8};
    const auto update = object->getFirmwareUpdateMethod("boot", image);
    image.assign(5, 0);
    EXPECT_EQ(sentBy(update), joined({text("boot"), {0, 0, 0, 2, 9, 8}}));
}

TEST_F(DeviceRoot, ReadsTheAnswersOfTheSystemMethods) {
    appliance.object(1)
        .method("timeGet", result(0, {0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFE}))
        .method("firmwareStatus", result(0, joined({u32(3), u32(0xFFFFFFFF)})));
    const auto object = systemObject();
    const auto time = object->getTimeGetMethod();
    root->call(time);
    EXPECT_EQ(time->value(), -2);
    const auto status = object->getFirmwareStatusMethod("boot");
    EXPECT_EQ(sentBy(status), text("boot"));
    EXPECT_EQ(status->value().first, 3u);
    EXPECT_EQ(status->value().second, 0xFFFFFFFFu);
}

TEST(DeviceOfAnApplication, NeedsNotToBeInterruptible) {
    const auto device = std::make_shared<support::FakeDevice>();
    device->interrupt();
    EXPECT_TRUE(device->actions.empty());
}

} // namespace
