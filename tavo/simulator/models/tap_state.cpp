#include <tavo/simulator/models/tap_state.h>

#include <algorithm>
#include <array>
#include <deque>
#include <optional>

namespace TAVO::simulator {

namespace {

constexpr std::size_t stateCount = 16;

constexpr std::size_t indexOf(TapState state) { return static_cast<std::size_t>(state); }

struct Successors {
    TapState onZero;
    TapState onOne;
};

using enum TapState;

constexpr std::array<Successors, stateCount> successors{{
    {runTestIdle, testLogicReset},
    {runTestIdle, selectDrScan},
    {captureDr, selectIrScan},
    {shiftDr, exit1Dr},
    {shiftDr, exit1Dr},
    {pauseDr, updateDr},
    {pauseDr, exit2Dr},
    {shiftDr, updateDr},
    {runTestIdle, selectDrScan},
    {captureIr, testLogicReset},
    {shiftIr, exit1Ir},
    {shiftIr, exit1Ir},
    {pauseIr, updateIr},
    {pauseIr, exit2Ir},
    {shiftIr, updateIr},
    {runTestIdle, selectDrScan},
}};

struct Step {
    TapState from;
    bool tms;
};

} // namespace

TapState nextState(TapState state, bool tms) noexcept {
    const auto& next = successors[indexOf(state)];
    return tms ? next.onOne : next.onZero;
}

std::vector<bool> shortestPath(TapState from, TapState to) {
    std::array<std::optional<Step>, stateCount> reachedBy;
    std::deque<TapState> frontier{from};
    while (from != to && !reachedBy[indexOf(to)]) {
        const auto state = frontier.front();
        frontier.pop_front();
        for (const bool tms : {false, true}) {
            const auto next = nextState(state, tms);
            if (next == from || reachedBy[indexOf(next)])
                continue;
            reachedBy[indexOf(next)] = Step{state, tms};
            frontier.push_back(next);
        }
    }
    std::vector<bool> path;
    for (auto state = to; state != from; state = reachedBy[indexOf(state)]->from)
        path.push_back(reachedBy[indexOf(state)]->tms);
    std::reverse(path.begin(), path.end());
    return path;
}

bool isResting(TapState state) noexcept {
    return state == testLogicReset || state == runTestIdle || state == pauseDr || state == pauseIr;
}

} // namespace TAVO::simulator
