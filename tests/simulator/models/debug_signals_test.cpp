#include <functional>

#include <gtest/gtest.h>

#include <tavo/simulator/models/debug_signals.h>
#include <tests/simulator/models/hand_clock.h>

namespace {

using namespace TAVO::simulator;
using Lines = DebugSignals::Lines;
using Source = DebugSignals::Source;

constexpr Lines none{};
constexpr Lines allLines{true, true, true, true};

struct DebugSignalsTest : testing::Test, tests::HandClock {
    DebugSignals signals{board};

    void boot() {
        board->setPower(true);
        advance(Board::resetDelay);
    }
    void change(const std::function<void(DebugSignals::Options&)>& how) {
        auto options = signals.options();
        how(options);
        signals.setOptions(options);
    }
    void makeInput(std::size_t index, std::int32_t edge, std::int32_t invert = 0) {
        DebugSignals::TriggerSetup setup;
        setup.mode = 1;
        setup.edge = edge;
        setup.invert = invert;
        signals.setSetup(index, setup);
    }
};

TEST_F(DebugSignalsTest, CoresAnswerARequestAfterTheDelayAndRunOnRelease) {
    boot();
    signals.setDebugRequest(true);
    advance(DebugSignals::haltDelay - 1);
    EXPECT_EQ(signals.debugReady(), none);
    advance(1);
    EXPECT_EQ(signals.debugReady(), allLines);
    signals.setDebugRequest(false);
    EXPECT_EQ(signals.debugReady(), none);
    EXPECT_EQ(signals.source(), Source::command);
}

TEST_F(DebugSignalsTest, ABoardWithoutPowerOrInResetDoesNotAnswer) {
    signals.setDebugRequest(true);
    advance(1000);
    EXPECT_EQ(signals.debugReady(), none);
    board->setPower(true);
    advance(Board::resetDelay - 1);
    EXPECT_EQ(signals.debugReady(), none);
    advance(1 + DebugSignals::haltDelay);
    EXPECT_EQ(signals.debugReady(), allLines) << "the request stood when reset was released";
    board->setPower(false);
    EXPECT_EQ(signals.debugReady(), none);
}

TEST_F(DebugSignalsTest, ASnapshotKeepsLinesUntilItIsCleared) {
    boot();
    signals.haltCore(2);
    EXPECT_EQ(signals.debugReady(), (Lines{false, false, true, false}));
    signals.setDebugRequest(false);
    EXPECT_EQ(signals.snapshot(), (Lines{false, false, true, false}));
    signals.clearSnapshot();
    EXPECT_EQ(signals.snapshot(), none);
    signals.haltCore(0);
    signals.clearSnapshot();
    EXPECT_EQ(signals.snapshot(), (Lines{true, false, false, false}))
        << "a line that is true is latched again";
}

TEST_F(DebugSignalsTest, AShortAnswerBetweenTwoLooksIsInTheSnapshot) {
    boot();
    signals.setDebugRequest(true);
    advance(DebugSignals::haltDelay + 1);
    signals.setDebugRequest(false);
    EXPECT_EQ(signals.snapshot(), allLines);
}

TEST_F(DebugSignalsTest, MaskedLinesTakeNoPart) {
    boot();
    change([](auto& options) { options.mask = {true, false, true, false}; });
    signals.setDebugRequest(true);
    signals.haltCore(1);
    advance(DebugSignals::haltDelay);
    EXPECT_EQ(signals.debugReady(), (Lines{true, false, true, false}));
}

TEST_F(DebugSignalsTest, APulseEndsByItselfAndLeavesTheCoresHalted) {
    boot();
    change([](auto& options) { options.pulseWidth = 20'500; });
    signals.setDebugRequest(true);
    advance(20);
    EXPECT_TRUE(signals.debugRequest());
    advance(1);
    EXPECT_FALSE(signals.debugRequest());
    EXPECT_EQ(signals.debugReady(), allLines);
    signals.setDebugRequest(false);
    EXPECT_EQ(signals.debugReady(), none);
}

TEST_F(DebugSignalsTest, TheResetOptionRequestsAtTheReleaseOfReset) {
    change([](auto& options) { options.onReset = true; });
    board->setPower(true);
    advance(Board::resetDelay + DebugSignals::haltDelay);
    EXPECT_TRUE(signals.debugRequest());
    EXPECT_EQ(signals.debugReady(), allLines);
    EXPECT_EQ(signals.source(), Source::reset);
}

TEST_F(DebugSignalsTest, OneHaltedCoreHaltsTheOthersWithTheReadyOption) {
    boot();
    change([](auto& options) { options.onDebugReady = true; });
    signals.haltCore(3);
    EXPECT_TRUE(signals.debugRequest());
    EXPECT_EQ(signals.source(), Source::debugReady);
    advance(DebugSignals::haltDelay);
    EXPECT_EQ(signals.debugReady(), allLines);
}

TEST_F(DebugSignalsTest, ATriggerRequestsAtItsEdgeAlone) {
    boot();
    makeInput(1, 1);
    change([](auto& options) { options.onTrigger[1] = {true, 1}; });
    signals.setTrigger(1, true);
    EXPECT_FALSE(signals.debugRequest()) << "a rising edge, and the setup waits for a falling one";
    signals.setTrigger(0, true);
    signals.setTrigger(0, false);
    EXPECT_FALSE(signals.debugRequest()) << "another trigger";
    signals.setTrigger(1, false);
    EXPECT_TRUE(signals.debugRequest());
    EXPECT_EQ(signals.source(), Source::trigger);
}

TEST_F(DebugSignalsTest, AnInvertedTriggerTurnsItsEdgesAndItsLevel) {
    boot();
    makeInput(0, 0, 1);
    change([](auto& options) { options.onTrigger[0] = {true, 0}; });
    EXPECT_TRUE(signals.trigger(0));
    signals.setTrigger(0, true);
    EXPECT_FALSE(signals.trigger(0));
    EXPECT_FALSE(signals.debugRequest());
    signals.setTrigger(0, false);
    EXPECT_TRUE(signals.debugRequest());
}

TEST_F(DebugSignalsTest, AnOutputTriggerFollowsItsSource) {
    boot();
    DebugSignals::TriggerSetup setup;
    setup.mode = 2;
    setup.source = 2;
    signals.setSetup(2, setup);
    EXPECT_FALSE(signals.trigger(2));
    signals.setDebugRequest(true);
    EXPECT_TRUE(signals.trigger(2));
}

TEST_F(DebugSignalsTest, TheFirstSourceStaysUntilItIsCleared) {
    boot();
    signals.setDebugRequest(true);
    change([](auto& options) { options.onTrigger[0] = {true, 0}; });
    makeInput(0, 2);
    signals.setTrigger(0, true);
    EXPECT_EQ(signals.source(), Source::command);
    signals.clearSource();
    EXPECT_EQ(signals.source(), Source::none);
    signals.setTrigger(0, false);
    EXPECT_EQ(signals.source(), Source::trigger);
}

TEST_F(DebugSignalsTest, WaitingPassesJustTheTimeThatItTakes) {
    boot();
    signals.setDebugRequest(true);
    std::uint64_t passed = 0;
    const auto pass = [&](std::uint64_t duration) {
        passed += duration;
        advance(duration);
    };
    EXPECT_TRUE(signals.waitForDebugReady({false, true, false, false}, 1000, pass));
    EXPECT_EQ(passed, DebugSignals::haltDelay);
    EXPECT_FALSE(signals.waitForDebugReady(none, 500, pass));
    EXPECT_EQ(passed, DebugSignals::haltDelay + 500);
}

} // namespace
