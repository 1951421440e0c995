#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <tavo/client/device/core_objects.h>
#include <tavo/client/device/device_factory.h>
#include <tavo/client/device/device_v1_0.h>
#include <tavo/simulator/simulator.h>

namespace {

using TAVO::DeviceFactory;
using TAVO::simulator::Options;
using TAVO::simulator::Simulator;

/// A simulated appliance on one of the two fixed ports, or none where somebody else has it.
std::unique_ptr<Simulator> simulatorOn(std::uint16_t port, int serverKey) {
    Options options;
    options.port = port;
    options.serverKey = serverKey;
    auto simulator = std::make_unique<Simulator>(options);
    try {
        simulator->start();
    } catch (const std::runtime_error&) {
        return nullptr;
    }
    return simulator;
}

// One test for all that needs the fixed ports: tests run side by side.
TEST(DefaultPorts, AreUsedWhereNoOtherIsAskedFor) {
    TAVO::CoreObjects::registerCoreObjects();
    const auto plain = simulatorOn(6123, 1);
    const auto secure = simulatorOn(6124, 2);
    if (!plain || !secure)
        GTEST_SKIP() << "the fixed ports are taken";

    for (const int port : {0, -1, -6123, 6123}) {
        TAVO::Device_Factory_Structs::TavoDeviceDescriptor descriptor;
        const auto device = DeviceFactory::queryDevice("127.0.0.1", port, descriptor);
        EXPECT_EQ(descriptor.port, 6123) << port;
        EXPECT_FALSE(descriptor.firstKeyFlag);
        EXPECT_TRUE(descriptor.secondKeyFlag);
    }
    EXPECT_EQ(plain->connectionCount(), 4u);
    EXPECT_EQ(secure->connectionCount(), 0u);

    TAVO::Device_Factory_Structs::TavoDeviceDescriptor descriptor;
    DeviceFactory::queryDevice("127.0.0.1", 6124, descriptor);
    EXPECT_EQ(descriptor.port, 6124);
    EXPECT_TRUE(descriptor.firstKeyFlag);

    const auto keysAskedOf = [](const Simulator& simulator) {
        int count = 0;
        for (const auto& call : simulator.calls())
            count += call.method == "getKey";
        return count;
    };
    DeviceFactory::buildDevice("127.0.0.1", "engineer", "tavo", false);
    EXPECT_EQ(plain->connectionCount(), 5u);
    EXPECT_EQ(keysAskedOf(*plain), 4);
    DeviceFactory::buildDevice("127.0.0.1", "engineer", "tavo", true);
    EXPECT_EQ(secure->connectionCount(), 2u);
    EXPECT_EQ(keysAskedOf(*secure), 2);
}

} // namespace
