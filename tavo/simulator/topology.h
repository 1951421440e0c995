#pragma once

#include <functional>
#include <string>
#include <vector>

#include <tavo/client/export.h>

namespace TAVO::simulator {

class Appliance;

/// A named set of root members for an appliance that has only its fixed objects.
struct Topology {
    std::string name;
    /// One line for help texts.
    std::string description;
    std::function<void(Appliance&)> build;
};

/// All topologies, the first being the default.
TAVO_API const std::vector<Topology>& topologies();

/// @throws std::invalid_argument that names the topology and those that there are.
TAVO_API const Topology& topologyNamed(const std::string& name);

} // namespace TAVO::simulator
