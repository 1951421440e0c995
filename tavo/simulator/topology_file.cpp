#include <tavo/simulator/topology.h>

#include <fstream>
#include <stdexcept>
#include <utility>

#include <tavo/simulator/objects/internal/json_entries.h>
#include <tavo/simulator/objects/internal/object_description.h>

namespace TAVO::simulator {

namespace {

using nlohmann::json;

std::vector<ObjectDescription> readObjects(const json& list, const std::string& place);

ObjectDescription readObject(const json& source, const std::string& place) {
    try {
        JsonEntries entries(source);
        ObjectDescription object;
        object.place = place;
        object.name = entries.require<std::string>("name", "text");
        object.type = entries.require<std::string>("type", "text");
        object.version = entries.take<std::string>("version", "text such as \"1.0\"", "1.0");
        if (const auto* options = entries.find("options"))
            object.options = *options;
        const auto* members = entries.find("members");
        entries.finish();
        if (!object.options.is_object())
            throw std::invalid_argument("'options' is " + object.options.dump() + ": expected {...}");
        if (members)
            object.members = readObjects(*members, place + ".members");
        return object;
    } catch (const std::invalid_argument& error) {
        const std::string text = error.what();
        throw std::invalid_argument(text.starts_with(place) ? text : place + ": " + text);
    }
}

std::vector<ObjectDescription> readObjects(const json& list, const std::string& place) {
    if (!list.is_array())
        throw std::invalid_argument(place + ": expected [...]");
    std::vector<ObjectDescription> objects;
    for (std::size_t i = 0; i < list.size(); ++i)
        objects.push_back(readObject(list[i], place + "[" + std::to_string(i) + "]"));
    return objects;
}

// Far deeper than any tree that a client opens. Bounds the recursion of everything that follows.
constexpr int deepestLevel = 512;

json parse(const std::filesystem::path& file) {
    const auto refuseDepth = [&](int depth, json::parse_event_t, const json&) {
        if (depth > deepestLevel)
            throw std::invalid_argument(file.string() + ": is nested too deeply");
        return true;
    };
    std::ifstream in(file, std::ios::binary);
    if (!in)
        throw std::invalid_argument(file.string() + ": cannot be read");
    try {
        return json::parse(in, refuseDepth);
    } catch (const json::exception& error) {
        const std::string text = error.what();
        throw std::invalid_argument(file.string() + ": " + text.substr(text.find("] ") + 2));
    }
}

} // namespace

Topology loadTopology(const std::filesystem::path& file) {
    const auto place = file.string();
    const auto source = parse(file);
    try {
        JsonEntries entries(source);
        Topology topology;
        topology.name = entries.require<std::string>("name", "text");
        topology.description = entries.take<std::string>("description", "text", "");
        const auto* list = entries.find("objects");
        entries.finish();
        if (!list)
            throw std::invalid_argument("'objects' is missing: expected [...]");
        topology.build = [objects = readObjects(*list, place + ": objects")](Appliance& appliance) {
            addObjects(appliance, objects);
        };
        return topology;
    } catch (const std::invalid_argument& error) {
        const std::string text = error.what();
        throw std::invalid_argument(text.starts_with(place) ? text : place + ": " + text);
    }
}

} // namespace TAVO::simulator
