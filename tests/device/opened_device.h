#pragma once

#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <tavo/client/device/device_factory.h>
#include <tavo/client/device/device_v1_0.h>
#include <tavo/client/wire/error.h>
#include <tests/support/all_types.h>
#include <tests/support/appliance_server.h>
#include <tests/support/failure_text.h>

namespace support {

/// A served appliance with one relay, "power", at the root, and devices that are opened on it as alice.
class OpenedDevice : public testing::Test {
protected:
    using Names = std::vector<std::string>;

    OpenedDevice() {
        support::registerAllTypes();
        server.change([](FakeAppliance& fake) {
            addFixedObjects(fake);
            fake.add(9, "relay");
            fake.object(0).method("rootMembers", result(0, joined({u32(1), text("power"), u32(9)})));
        });
    }

    std::shared_ptr<TAVO::Device> build(bool secure = false) {
        return TAVO::DeviceFactory::buildDevice("127.0.0.1", server.port(), "alice", "secret", secure);
    }
    std::shared_ptr<TAVO::Device> query() {
        TAVO::Device_Factory_Structs::TavoDeviceDescriptor descriptor;
        return TAVO::DeviceFactory::queryDevice("127.0.0.1", server.port(), descriptor);
    }

    /// What the "device" object answers to a method from now on.
    template <class Answer>
    void answer(const std::string& method, Answer answer) {
        server.change([&](FakeAppliance& fake) { fake.object(0).method(method, answer); });
    }

    /// The calls from now on are those of callNames().
    void forget() { forgotten_ = server.callNames().size(); }
    Names callNames() const {
        const auto all = server.callNames();
        return {all.begin() + static_cast<std::ptrdiff_t>(forgotten_), all.end()};
    }

    FakeAppliance appliance;
    ApplianceServer server{appliance};

private:
    std::size_t forgotten_ = 0;
};

} // namespace support
