#include <tavo/simulator/topology.h>

#include <stdexcept>
#include <utility>

#include <tavo/simulator/objects/internal/object_description.h>

namespace TAVO::simulator {

namespace {

using Objects = std::vector<ObjectDescription>;

ObjectDescription powerRelay() {
    return {.name = "power", .type = "relay", .options = {{"drives", "power"}}};
}

ObjectDescription gpuBus() {
    const nlohmann::json eeprom{{"address", 0x50}, {"kind", "eeprom256"}};
    return {.name = "i2c", .type = "i2c", .options = {{"devices", nlohmann::json::array({eeprom})}}};
}

Objects standard() {
    const Objects drawer{{"left", "relay"}, {"right", "relay"}};
    return {
        powerRelay(),
        {"cmos", "cmosRelay"},
        {"cpu0", "cpuDebug", "1.1", {{"jtag", "jtag", "1.1"}, {"hdt", "hdt", "1.1"}}},
        {"csJtag", "csJtag", "1.0", {{"jtag", "jtag", "1.1"}}},
        {"gpu0", "gpuDebug", "1.0", {{"jtag", "jtag", "1.1"}, {"gpuScan", "gpuScan"}, gpuBus()}},
        {"gpuMux", "kelvorGpuDebugMux"},
        {"uvdMux", "kelvorUvdMux"},
        {"i2c", "i2c"},
        {"lpc", "lpc", "1.0", {{"lpcPostCode", "lpcPostCode"}, {"lpcRomEmulation", "lpcRomEmulation"}}},
        {"com", "com"},
        {"lcd", "cfa633"},
        {"bench",
         "rack",
         "3.1.4",
         {{"lamp", "relay"}, {"fan", "relay"}, {"drawer", "rack", "3.1.4", drawer}}},
    };
}

Objects legacy() {
    return {
        powerRelay(),          {"jtag", "jtag", "1.0"},
        {"hdt", "hdt", "1.0"}, {"cpu", "cpuDebug", "1.0", {{"jtag", "jtag", "1.0"}, {"hdt", "hdt", "1.0"}}},
        {"i2c", "i2c", "1.0"},
    };
}

Objects alone(ObjectDescription broken) { return {powerRelay(), std::move(broken)}; }

Topology named(std::string name, std::string description, Objects objects) {
    for (auto& object : objects)
        object.place = name + ": " + object.name;
    return {std::move(name), std::move(description),
            [objects = std::move(objects)](Appliance& appliance) { addObjects(appliance, objects); }};
}

} // namespace

const std::vector<Topology>& topologies() {
    static const std::vector<Topology> all{
        named("standard", "one of every module, all on one board that relay power switches", standard()),
        named("bare", "only device, system and private", {}),
        named("legacy", "debug objects of version 1.0", legacy()),
        named("broken-cpudebug-no-jtag", "a cpuDebug without its child jtag",
              alone({"cpu", "cpuDebug", "1.1", {{"hdt", "hdt", "1.1"}}})),
        named("broken-cpudebug-no-hdt", "a cpuDebug without its child hdt",
              alone({"cpu", "cpuDebug", "1.1", {{"jtag", "jtag", "1.1"}}})),
        named("broken-cpudebug-old-jtag", "a cpuDebug 1.1 whose child jtag is 1.0",
              alone({"cpu", "cpuDebug", "1.1", {{"jtag", "jtag", "1.0"}, {"hdt", "hdt", "1.1"}}})),
        named("broken-gpudebug-no-gpuscan", "a gpuDebug without its child gpuScan",
              alone({"gpu", "gpuDebug", "1.0", {{"jtag", "jtag", "1.1"}, {"i2c", "i2c"}}})),
        named("broken-lpc-no-rom", "an lpc without its child lpcRomEmulation",
              alone({"lpc", "lpc", "1.0", {{"lpcPostCode", "lpcPostCode"}}})),
        named("broken-lpc-no-postcode", "an lpc without its child lpcPostCode",
              alone({"lpc", "lpc", "1.0", {{"lpcRomEmulation", "lpcRomEmulation"}}})),
        named("broken-versions", "a relay of a newer version, which works, and a newer lpc, which does not",
              {{"lamp", "relay", "2.0"},
               {"lpc",
                "lpc",
                "1.1",
                {{"lpcPostCode", "lpcPostCode"}, {"lpcRomEmulation", "lpcRomEmulation"}}}}),
    };
    return all;
}

Topology topologyNamed(const std::string& name) {
    if (name.ends_with(".json"))
        return loadTopology(name);
    std::string known;
    for (const auto& topology : topologies()) {
        if (topology.name == name)
            return topology;
        known += (known.empty() ? "" : ", ") + topology.name;
    }
    throw std::invalid_argument("there is no topology '" + name + "', only " + known +
                                ", or the path of a .json file");
}

} // namespace TAVO::simulator
