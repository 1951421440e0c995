#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace TAVO::HWDebug {

/// The sixteen states of a TAP controller (IEEE 1149.1). The numbering of a device is its own to define;
/// these are the numbers of "jtag" objects whose states go from Test-Logic-Reset and Run-Test/Idle through
/// the column of the data register to Update-IR.
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

/// How many states there are.
inline constexpr std::size_t tapStateCount = 16;

/// The state after a rising edge of TCK.
constexpr TapState nextState(TapState state, bool tms) noexcept {
    using enum TapState;
    constexpr TapState onZero[tapStateCount]{
        runTestIdle, runTestIdle, captureDr, shiftDr, shiftDr, pauseDr, pauseDr, shiftDr,
        runTestIdle, captureIr,   shiftIr,   shiftIr, pauseIr, pauseIr, shiftIr, runTestIdle,
    };
    constexpr TapState onOne[tapStateCount]{
        testLogicReset, selectDrScan,   selectIrScan, exit1Dr, exit1Dr,  updateDr, exit2Dr,  updateDr,
        selectDrScan,   testLogicReset, exit1Ir,      exit1Ir, updateIr, exit2Ir,  updateIr, selectDrScan,
    };
    const auto index = static_cast<std::size_t>(state);
    return tms ? onOne[index] : onZero[index];
}

/// Whether the controller can stay in the state with TCK running and no register shifting: Test-Logic-Reset,
/// Run-Test/Idle and the two pauses.
constexpr bool isResting(TapState state) noexcept {
    using enum TapState;
    return state == testLogicReset || state == runTestIdle || state == pauseDr || state == pauseIr;
}

/// The TMS values that lead from one state to another in the fewest clocks; none if they are equal.
inline std::vector<bool> shortestPath(TapState from, TapState to) {
    // Clocks from each state to `to`, found from there backwards.
    constexpr std::size_t unknown = tapStateCount;
    std::array<std::size_t, tapStateCount> clocks{};
    clocks.fill(unknown);
    clocks[static_cast<std::size_t>(to)] = 0;
    const auto clocksFrom = [&](TapState state) { return clocks[static_cast<std::size_t>(state)]; };
    for (std::size_t distance = 1; clocksFrom(from) == unknown; ++distance)
        for (std::size_t index = 0; index < tapStateCount; ++index)
            for (const bool tms : {false, true})
                if (clocks[index] == unknown &&
                    clocksFrom(nextState(static_cast<TapState>(index), tms)) == distance - 1)
                    clocks[index] = distance;
    std::vector<bool> path;
    while (from != to) {
        const bool tms = clocksFrom(nextState(from, false)) >= clocksFrom(from);
        path.push_back(tms);
        from = nextState(from, tms);
    }
    return path;
}

} // namespace TAVO::HWDebug
