#include <cstdlib>
#include <stdexcept>
#include <string>

#include <tavo/simulator/topology.h>
#include <tests/fuzz/memory_file.h>
#include <tests/fuzz/simulated_device.h>

// Files of topologies. Input: the file. It makes an appliance that answers, or is refused with its name.

namespace {

using fuzz::require;

/// An appliance must answer what a client asks of every object first.
void checkAppliance(fuzz::MemoryAppliance& appliance) {
    for (const auto& [id, object] : appliance.appliance().objects()) {
        const auto* named = appliance.appliance().find(object->fullName());
        require(named != nullptr, "an object is found by its full name");
        require(object->instanceId() == id, "an object is found by its id");
        require(object->methodId("methods") == 3, "an object has the methods of every object");
    }
    fuzz::AppliancePeer peer(appliance);
    const auto device = std::make_shared<fuzz::MemoryDevice>(peer);
    try {
        fuzz::open(device);
    } catch (const TAVO::Error&) { // a topology may be one that clients refuse
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t length) {
    static fuzz::MemoryFile file;
    file.write({bytes, length});
    try {
        const auto topology = TAVO::simulator::loadTopology(file.path());
        fuzz::MemoryAppliance appliance(topology);
        checkAppliance(appliance);
    } catch (const std::invalid_argument& error) {
        require(std::string(error.what()).starts_with(file.path()), "a refusal begins with the file",
                error.what());
    }
    return 0;
}
