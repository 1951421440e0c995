#pragma once

#include <memory>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include <tavo/simulator/appliance.h>

namespace TAVO::simulator {

/// The description of an object in a topology.
struct ObjectDescription {
    std::string name;
    std::string type;
    std::string version = "1.0";
    std::vector<ObjectDescription> members = {};
    nlohmann::json options = nlohmann::json::object();
    /// Place of the description in the file, for messages.
    std::string place = {};
};

/// Makes the object without name and members. A type without a model has only the methods of every object.
/// @throws std::invalid_argument for an unknown or invalid option.
std::unique_ptr<SimulatedObject> makeObject(Appliance& appliance, const ObjectDescription& description);

/// Adds the described objects to the root members.
/// @throws std::invalid_argument that names the place and what is wrong.
void addObjects(Appliance& appliance, const std::vector<ObjectDescription>& objects);

} // namespace TAVO::simulator
