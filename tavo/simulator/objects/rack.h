#pragma once

#include <tavo/simulator/export.h>
#include <tavo/simulator/simulated_object.h>

namespace TAVO::simulator {

/// A group of a type unknown to clients. It holds its members and blinks on "identify".
class TAVO_SIMULATOR_API Rack : public SimulatedObject {
public:
    Rack();
};

} // namespace TAVO::simulator
