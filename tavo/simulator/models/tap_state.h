#pragma once

#include <cstdint>
#include <vector>

#include <tavo/simulator/export.h>

namespace TAVO::simulator {

/// The sixteen states of a TAP controller (IEEE 1149.1), as the appliance numbers them.
enum class TapState : std::uint8_t {
    testLogicReset,
    runTestIdle,
    selectDrScan,
    captureDr,
    shiftDr,
    exit1Dr,
    pauseDr,
    exit2Dr,
    updateDr,
    selectIrScan,
    captureIr,
    shiftIr,
    exit1Ir,
    pauseIr,
    exit2Ir,
    updateIr
};

/// The state after a rising edge of TCK.
TAVO_SIMULATOR_API TapState nextState(TapState state, bool tms) noexcept;

/// The TMS values that lead from one state to another in the fewest clocks; none if they are equal.
TAVO_SIMULATOR_API std::vector<bool> shortestPath(TapState from, TapState to);

/// Whether the controller can stay in the state with TCK running and no register shifting: Test-Logic-Reset,
/// Run-Test/Idle and the two pauses.
TAVO_SIMULATOR_API bool isResting(TapState state) noexcept;

} // namespace TAVO::simulator
