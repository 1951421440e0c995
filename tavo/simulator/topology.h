#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include <tavo/simulator/export.h>

namespace TAVO::simulator {

class Appliance;

/// A named set of root members for an appliance.
struct Topology {
    std::string name;
    /// One line for help texts.
    std::string description;
    /// Adds the members. Throws std::invalid_argument if a file describes an object that cannot be built.
    std::function<void(Appliance&)> build;
};

/// All named topologies; the first is the default.
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
/// Accepts every type and version. A type without a model has only the eight methods of every object.
/// @throws std::invalid_argument that names the file, the place in it and the mistake.
TAVO_SIMULATOR_API Topology loadTopology(const std::filesystem::path& file);

/// The topology with this name, or the one in this file if the name ends in ".json".
/// @throws std::invalid_argument that names the topology and the known ones; or as loadTopology().
TAVO_SIMULATOR_API Topology topologyNamed(const std::string& name);

} // namespace TAVO::simulator
