// Tests application code against a simulated appliance in the same process: what it does, and how it handles
// failures.
#include <iostream>
#include <memory>
#include <string>

#include <tavo/client.h>
#include <tavo/simulator/objects/relay.h>
#include <tavo/simulator/simulator.h>

// The code under test: restarts a board by switching its supply off and on.
bool restartBoard(TAVO::Device& device, const std::string& supply) {
    const auto relay = device.get<CommonModules::Relay_v1_0>(supply);
    const auto queue = std::make_shared<TAVO::MulticallQueue>();
    queue->add(relay->getSetMethod(false));
    queue->add(device.getSystem()->getUSleepMethod(10));
    queue->add(relay->getSetMethod(true));
    device.multicall(queue);
    for (const auto& method : queue->getMethods())
        if (method->returnCode() != 0)
            return false;
    return true;
}

namespace {

using TAVO::simulator::Simulator;
namespace faults = TAVO::simulator::faults;

int failures = 0;

void expect(bool holds, const char* what) {
    std::cout << (holds ? "ok      " : "FAILED  ") << what << '\n';
    failures += holds ? 0 : 1;
}

std::shared_ptr<TAVO::Device> open(const Simulator& simulator) {
    return TAVO::DeviceFactory::buildDevice("127.0.0.1", simulator.port(), "engineer", "tavo", true);
}

void boardsAreRestarted() {
    Simulator simulator; // on a free port of 127.0.0.1, with the standard objects
    simulator.start();
    const auto device = open(simulator);
    simulator.clearCalls();
    const auto requestsBefore = simulator.requestCount();

    expect(restartBoard(*device, "power"), "a board is restarted");
    expect(simulator.requestCount() == requestsBefore + 1, "it takes a single exchange");
    const auto calls = simulator.calls();
    expect(calls.size() == 3 && calls[0].toString().find("power.set(state=false)") != std::string::npos,
           "the supply goes off first");
    expect(simulator.inspect([](TAVO::simulator::Appliance& appliance) {
        return appliance.get<TAVO::simulator::Relay>("power").state();
    }),
           "the supply is on in the end");

    bool reported = false;
    try {
        restartBoard(*device, "fountain");
    } catch (const TAVO::SpecificationError&) {
        reported = true;
    }
    expect(reported, "a supply that does not exist is reported");
}

void failuresAreMet() {
    Simulator simulator;
    simulator.start();
    const auto device = open(simulator);

    simulator.failNext(faults::ReturnCode{7, 2}); // the third call of the next request
    expect(!restartBoard(*device, "power"), "a return code is reported");

    simulator.failNext(faults::DeviceError{1006, 2, "the fuse is blown"});
    try {
        restartBoard(*device, "power");
        expect(false, "a device error is thrown");
    } catch (const TAVO::ExecutionError& error) {
        expect(error.failedMethodIndex() == 1, "a device error names the call that failed");
        std::cout << "        " << error.what() << '\n';
    }

    simulator.failNext(faults::Close{});
    try {
        restartBoard(*device, "power");
        expect(false, "a lost connection is thrown");
    } catch (const TAVO::NetworkError&) {
        expect(restartBoard(*device, "power"), "after a lost connection the next attempt connects again");
    }
}

void theDeviceIsReleased() {
    Simulator simulator;
    simulator.start();
    auto device = open(simulator);
    expect(simulator.lockHolder() && simulator.lockHolder()->user == "engineer", "the device is locked");
    device.reset();
    expect(!simulator.lockHolder(), "the lock is released at the end");
}

} // namespace

int main() try {
    TAVO::CoreObjects::registerCoreObjects();
    CommonModules::CommonModulesObjects::registerCoreObjects();
    boardsAreRestarted();
    failuresAreMet();
    theDeviceIsReleased();
    return failures == 0 ? 0 : 1;
} catch (const std::exception& failure) {
    std::cerr << failure.what() << '\n';
    return 1;
}
