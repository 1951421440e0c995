// An application and the simulator that its own tests use: every registered type is built as its proxy.
#include <iostream>
#include <memory>

#include <tavo/client.h>
#include <tavo/simulator/simulator.h>

namespace {

template <class Proxy>
bool has(TAVO::Device& device, const char* name) {
    for (const auto& child : device.getChildren())
        if (child->getName() == name)
            return std::dynamic_pointer_cast<Proxy>(child) != nullptr;
    return false;
}

bool refusesASecondUser(int port) {
    try {
        TAVO::DeviceFactory::buildDevice("127.0.0.1", port, "guest", "tavo", false);
    } catch (const TAVO::LockError& error) {
        return error.lockingUser() == "engineer";
    }
    return false;
}

} // namespace

int main() {
    TAVO::CoreObjects::registerCoreObjects();
    TAVO::HWDebug::HwdObjects::registerCoreObjects();
    CommonModules::CommonModulesObjects::registerCoreObjects();

    TAVO::simulator::Simulator simulator;
    simulator.start();
    const auto device =
        TAVO::DeviceFactory::buildDevice("127.0.0.1", simulator.port(), "engineer", "tavo", true);

    if (!device->getDevice() || !device->getSystem() || !device->getPrivate()) {
        std::cerr << "a fixed object is missing\n";
        return 1;
    }
    if (!has<CommonModules::Relay_v1_0>(*device, "power") ||
        !has<CommonModules::CmosRelay_v1_0>(*device, "cmos")) {
        std::cerr << "an object is not of the class of its type\n";
        return 1;
    }
    if (!refusesASecondUser(simulator.port())) {
        std::cerr << "a second user was not refused\n";
        return 1;
    }
    const auto time = device->getSystem()->getTimeGetMethod();
    device->call(time);
    return time->returnCode() == 0 ? 0 : 1;
}
