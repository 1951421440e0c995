#pragma once

#include <memory>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include <tavo/simulator/appliance.h>

namespace TAVO::simulator {

/// An object that is yet to be made, as a topology describes it.
struct ObjectDescription {
    std::string name;
    std::string type;
    std::string version = "1.0";
    std::vector<ObjectDescription> members = {};
    nlohmann::json options = nlohmann::json::object();
    /// Where the description stands, for messages.
    std::string place = {};
};

/// Makes the object without name and members. A type that has no model gets the methods of every object
/// alone.
/// @throws std::invalid_argument for an option that it does not have or cannot follow.
std::unique_ptr<SimulatedObject> makeObject(Appliance& appliance, const ObjectDescription& description);

/// Adds the described objects to the root members.
/// @throws std::invalid_argument that names the place and what is wrong.
void addObjects(Appliance& appliance, const std::vector<ObjectDescription>& objects);

} // namespace TAVO::simulator
