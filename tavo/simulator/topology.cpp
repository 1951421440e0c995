#include <tavo/simulator/topology.h>

#include <stdexcept>

#include <tavo/simulator/appliance.h>
#include <tavo/simulator/objects/relay.h>

namespace TAVO::simulator {

namespace {

/// A group of a type that no client knows: it keeps its members together and blinks on request.
class Rack : public SimulatedObject {
public:
    Rack()
        : SimulatedObject("rack", "3.1.4") {
        addMethod(identifyRow);
        on<None, None>("identify", [] {});
    }

private:
    static constexpr auto identifyRow = TAVOXTranscode::row<None, None>("identify");
};

void buildStandard(Appliance& appliance) {
    appliance.add<Relay>("power");
    appliance.add<CmosRelay>("cmos");
    auto& bench = appliance.add<Rack>("bench");
    bench.add<Relay>("lamp");
    bench.add<Relay>("fan");
    auto& drawer = bench.add<Rack>("drawer");
    drawer.add<Relay>("left");
    drawer.add<Relay>("right");
}

} // namespace

const std::vector<Topology>& topologies() {
    static const std::vector<Topology> all{
        {"standard", "relays power and cmos, and a bench of an unknown type with nested relays",
         buildStandard},
        {"bare", "device, system and private alone", [](Appliance&) {}},
    };
    return all;
}

const Topology& topologyNamed(const std::string& name) {
    std::string known;
    for (const auto& topology : topologies()) {
        if (topology.name == name)
            return topology;
        known += (known.empty() ? "" : ", ") + topology.name;
    }
    throw std::invalid_argument("there is no topology '" + name + "', only " + known);
}

} // namespace TAVO::simulator
