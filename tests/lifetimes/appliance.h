#pragma once

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>

#include <tavo/client.h>
#include <tests/support/all_types.h>

// What the programs of this folder share. None of it has static storage, and <iostream> stays out: including
// it would set up the standard streams earlier than an application may have them.

inline void expect(bool holds, const char* what) {
    if (holds)
        return;
    std::fprintf(stderr, "does not hold: %s\n", what);
    std::fflush(stdout);
    std::_Exit(1);
}

/// Opens the simulated appliance that the test has started.
inline std::shared_ptr<TAVO::Device> openAppliance() {
    const auto* port = std::getenv("TAVO_SIM_PORT");
    expect(port != nullptr, "TAVO_SIM_PORT names a port");
    return TAVO::DeviceFactory::buildDevice("127.0.0.1", std::stoi(port), "engineer", "tavo", true);
}

template <class Proxy>
bool has(const TAVO::Device& device, const std::string& name) {
    return std::dynamic_pointer_cast<Proxy>(device.getChild(name)) != nullptr;
}

inline void expectAnswers(TAVO::Device& device) {
    const auto time = device.getSystem()->getTimeGetMethod();
    device.call(time);
    expect(time->returnCode() == 0 && time->value() > 0, "the appliance tells the time");
}
