#include <vector>

#include <gtest/gtest.h>

#include <tavo/client/hwdebug/tap_state.h>

namespace {

using namespace TAVO::HWDebug;
using enum TapState;

constexpr int stateCount = 16;

TEST(TapStates, FiveClocksWithTmsHighResetFromEverywhere) {
    for (int start = 0; start < stateCount; ++start) {
        auto state = static_cast<TapState>(start);
        for (int clock = 0; clock < 5; ++clock)
            state = nextState(state, true);
        EXPECT_EQ(state, testLogicReset) << "from state " << start;
    }
}

TEST(TapStates, EveryPathLeadsWhereItSaysInTheFewestClocks) {
    for (int from = 0; from < stateCount; ++from)
        for (int to = 0; to < stateCount; ++to) {
            const auto path = shortestPath(static_cast<TapState>(from), static_cast<TapState>(to));
            auto state = static_cast<TapState>(from);
            for (const bool tms : path)
                state = nextState(state, tms);
            EXPECT_EQ(state, static_cast<TapState>(to)) << from << " to " << to;
            EXPECT_LE(path.size(), 9u) << from << " to " << to;
        }
}

TEST(TapStates, TheUsualPathsAreTheUsualOnes) {
    using Path = std::vector<bool>;
    EXPECT_EQ(shortestPath(runTestIdle, shiftDr), (Path{true, false, false}));
    EXPECT_EQ(shortestPath(runTestIdle, shiftIr), (Path{true, true, false, false}));
    EXPECT_EQ(shortestPath(testLogicReset, runTestIdle), (Path{false}));
    EXPECT_EQ(shortestPath(exit1Dr, runTestIdle), (Path{true, false}));
    EXPECT_EQ(shortestPath(pauseDr, shiftDr), (Path{true, false}));
    EXPECT_EQ(shortestPath(shiftIr, testLogicReset).size(), 5u);
    EXPECT_TRUE(shortestPath(pauseIr, pauseIr).empty());
}

TEST(TapStates, FourStatesRestWhileTckRuns) {
    std::vector<TapState> resting;
    for (int state = 0; state < stateCount; ++state)
        if (isResting(static_cast<TapState>(state)))
            resting.push_back(static_cast<TapState>(state));
    EXPECT_EQ(resting, (std::vector<TapState>{testLogicReset, runTestIdle, pauseDr, pauseIr}));
}

} // namespace
