#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include <tavo/simulator/export.h>

namespace TAVO::simulator {

class Appliance;

/// A named set of root members for an appliance that has only its fixed objects.
struct Topology {
    std::string name;
    /// One line for help texts.
    std::string description;
    /// Throws std::invalid_argument where the description of an object, which came from a file, cannot be
    /// followed.
    std::function<void(Appliance&)> build;
};

/// All topologies that have a name of their own, the first being the default.
TAVO_SIMULATOR_API const std::vector<Topology>& topologies();

/// Reads a topology from a JSON file:
///
/// @code{.json}
/// {
///   "name": "bench",
///   "objects": [
///     {"name": "bus0", "type": "i2c", "version": "1.0"},
///     {"name": "rack", "type": "rack", "members": [{"name": "power", "type": "relay"}]}
///   ]
/// }
/// @endcode
///
/// Every type and every version is accepted. A type that has no model gets the eight methods of every object
/// alone.
/// @throws std::invalid_argument that names the file, the place in it and what is wrong.
TAVO_SIMULATOR_API Topology loadTopology(const std::filesystem::path& file);

/// The topology of that name, or the one in the file of that path when it ends in ".json".
/// @throws std::invalid_argument that names the topology and those that there are; or as loadTopology.
TAVO_SIMULATOR_API Topology topologyNamed(const std::string& name);

} // namespace TAVO::simulator
