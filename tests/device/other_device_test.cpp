#include <memory>
#include <string>
#include <vector>

#include <tavo/client/commonmodules/relay.h>
#include <tavo/client/exchange/tavox_device.h>
#include <tavo/client/object/multicall_queue.h>
#include <tests/device/opened_device.h>

namespace {

using support::failureOf;
using support::joined;
using support::result;
using support::text;
using support::u32;
using TAVO::DeviceFactory;
using TAVO::SpecificationError;

/// Two boards on a bench, each with a relay of the same name and ids.
class OtherDevice : public support::OpenedDevice {
protected:
    OtherDevice() {
        otherServer.change([](support::FakeAppliance& fake) {
            support::addFixedObjects(fake);
            fake.add(9, "relay").method("set");
            fake.object(0).method("rootMembers", result(0, joined({u32(1), text("power"), u32(9)})));
        });
        server.change([](support::FakeAppliance& fake) { fake.object(9).method("set"); });
        device = build();
        other = DeviceFactory::buildDevice("127.0.0.1", otherServer.port(), "alice", "secret", false);
        forget();
        before = otherServer.exchanges();
    }

    static std::shared_ptr<TAVO::Method> powerOn(const TAVO::Device& owner) {
        return std::dynamic_pointer_cast<CommonModules::Relay_v1_0>(owner.getChild("power"))
            ->getSetMethod(true);
    }

    support::FakeAppliance otherAppliance;
    support::ApplianceServer otherServer{otherAppliance};
    std::shared_ptr<TAVO::Device> device;
    std::shared_ptr<TAVO::Device> other;
    std::size_t before = 0;
};

const std::string foreignMethod = "Method belongs to another device: power.set";

TEST_F(OtherDevice, IsNotSwitchedByAMethodOfThisOne) {
    EXPECT_EQ(failureOf<SpecificationError>([&] { other->call(powerOn(*device)); }), foreignMethod);
    EXPECT_EQ(otherServer.exchanges(), before);
    other->call(powerOn(*other));
    EXPECT_EQ(otherServer.callNames().back(), "9.set");
    EXPECT_EQ(callNames(), Names{});
}

TEST_F(OtherDevice, IsSentNothingOfABatchWithAMethodOfThisOne) {
    const auto queue = std::make_shared<TAVO::MulticallQueue>();
    queue->add(powerOn(*other));
    queue->add(powerOn(*device));
    EXPECT_EQ(failureOf<SpecificationError>([&] { other->multicall(queue); }), foreignMethod);
    EXPECT_EQ(otherServer.exchanges(), before);
    EXPECT_EQ(other->getDevice()->type(), "device") << "the connection is usable";
    EXPECT_EQ(otherServer.connections(), 1u);
}

TEST_F(OtherDevice, TakesMethodsOfObjectsWhoseDeviceIsGone) {
    const auto power = device->getChild("power");
    const auto method = powerOn(*device);
    device.reset();
    other->call(method);
    EXPECT_EQ(otherServer.callNames().back(), "9.set");
}

/// An application's own device, which hands its calls to another one and notes them.
class Forwarding : public TAVO::Device {
public:
    explicit Forwarding(std::shared_ptr<TAVO::Device> target)
        : target_(std::move(target)) {}

    void call(std::shared_ptr<TAVO::Method> method) override { target_->call(method); }
    void multicall(std::shared_ptr<TAVO::MulticallQueue> queue) override { target_->multicall(queue); }
    void unlock() override { target_->unlock(); }
    void getKey() override { target_->getKey(); }
    bool checkTavoKey(bool& first, bool& second) const override {
        return target_->checkTavoKey(first, second);
    }
    int getMaxPacketSize() override { return 0; }

protected:
    void lock(const std::string&, const std::string&) override {}
    void lock() override {}
    bool login(const std::string&, const std::string&) override { return false; }

private:
    std::shared_ptr<TAVO::Device> target_;
};

TEST_F(OtherDevice, TakesMethodsOfAWrapperThatForwardsItsCalls) {
    const auto wrapper = std::make_shared<Forwarding>(other);
    const auto power = std::dynamic_pointer_cast<CommonModules::Relay_v1_0>(
        TAVO::ObjectFactory::buildObject(wrapper, "power", 9, nullptr));
    ASSERT_TRUE(power);
    wrapper->call(power->getSetMethod(true));
    EXPECT_EQ(otherServer.callNames().back(), "9.set");
}

/// The same, derived from the library's own class.
class ForwardingTavoxDevice : public TAVO::TAVOXDevice {
public:
    ForwardingTavoxDevice(int port, std::shared_ptr<TAVO::Device> target)
        : TAVOXDevice("127.0.0.1", port, "", "", false)
        , target_(std::move(target)) {}
    void call(std::shared_ptr<TAVO::Method> method) override { target_->call(method); }

private:
    std::shared_ptr<TAVO::Device> target_;
};

TEST_F(OtherDevice, TakesMethodsOfAWrapperThatIsDerivedFromTheLibrarysClass) {
    support::GuardedListener listener;
    const auto wrapper = std::make_shared<ForwardingTavoxDevice>(listener.port(), other);
    const auto power = std::dynamic_pointer_cast<CommonModules::Relay_v1_0>(
        TAVO::ObjectFactory::buildObject(wrapper, "power", 9, nullptr));
    ASSERT_TRUE(power);
    wrapper->call(power->getSetMethod(true));
    EXPECT_EQ(otherServer.callNames().back(), "9.set");
}

} // namespace
