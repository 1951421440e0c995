#include <chrono>
#include <cstddef>
#include <cstdint>
#include <random>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include <tavo/jtag/tap_tracker.h>
#include <tests/jtag/chain_model.h>

namespace {

using namespace TAVO::jtag;
using enum TapState;
using jtag_test::ChainModel;
using jtag_test::ModelPort;
using std::chrono::microseconds;

microseconds microsecondOfEach(std::uint64_t clocks) {
    return microseconds(static_cast<std::int64_t>(clocks));
}

TapTracker trackerAt(TapState state) { return {state, microsecondOfEach}; }

/// Clocks given as TMS values; TDI is 0, and nothing is read.
void clocks(TapTracker& tracker, std::string_view tms) {
    for (const char level : tms)
        tracker.clock(level == '1', false, false);
}

Shift shiftOf(Register target, std::size_t bits, TapState end) {
    return {target, BitString(bits, false), end, true};
}

TEST(TapTracker, ScanUpToUpdateIsOneShift) {
    auto tracker = trackerAt(runTestIdle);
    clocks(tracker, "100"
                    "0001"
                    "10");
    EXPECT_EQ(tracker.take().steps, (Steps{shiftOf(Register::data, 4, runTestIdle)}));
    clocks(tracker, "1100"
                    "01"
                    "0"
                    "0"
                    "10"
                    "01"
                    "1");
    EXPECT_EQ(tracker.take().steps[0], Step(shiftOf(Register::instruction, 2, pauseIr)))
        << "it stays in Pause for a clock";
}

TEST(TapTracker, PauseWithinScanNeedsNoStep) {
    auto tracker = trackerAt(runTestIdle);
    clocks(tracker, "100"
                    "01"
                    "0"
                    "10"
                    "001"
                    "0"
                    "11"
                    "0");
    EXPECT_EQ(tracker.take().steps, (Steps{shiftOf(Register::data, 5, runTestIdle)}));
}

TEST(TapTracker, AnswerDueWithinShiftParksInPauseAndUpdatesOnce) {
    auto tracker = trackerAt(runTestIdle);
    clocks(tracker, "100"
                    "00");
    tracker.clock(false, true, true);
    EXPECT_TRUE(tracker.awaitsPort());
    const auto first = tracker.take();
    ASSERT_EQ(first.steps.size(), 1u);
    EXPECT_EQ(std::get<Shift>(first.steps[0]).end, pauseDr);
    EXPECT_EQ(first.wanted, (std::vector<TdoRun>{{0, 2, 1}}));
    clocks(tracker, "01");
    EXPECT_EQ(tracker.take().steps, (Steps{shiftOf(Register::data, 2, pauseDr)})) << "the client is in Exit1";
    EXPECT_TRUE(tracker.take().steps.empty());
    clocks(tracker, "1");
    EXPECT_EQ(tracker.take().steps, (Steps{Move{runTestIdle}})) << "Exit2, Update";
    clocks(tracker, "0");
    EXPECT_TRUE(tracker.take().steps.empty());
}

TEST(TapTracker, CaptureWithoutShiftIsMadeThroughPause) {
    auto tracker = trackerAt(runTestIdle);
    clocks(tracker, "101"
                    "1"
                    "0");
    EXPECT_EQ(tracker.take().steps, (Steps{Move{pauseDr}, Move{runTestIdle}}));
    clocks(tracker, "1101"
                    "0");
    EXPECT_EQ(tracker.take().steps, (Steps{Move{pauseIr}}));
    clocks(tracker, "10"
                    "1");
    EXPECT_EQ(tracker.take().steps, (Steps{shiftOf(Register::instruction, 1, pauseIr)}));
}

TEST(TapTracker, ResetAndClocksInIdle) {
    auto tracker = trackerAt(runTestIdle);
    clocks(tracker, "111111"
                    "0");
    EXPECT_EQ(tracker.take().steps, (Steps{Move{testLogicReset}, Move{runTestIdle}}));
    clocks(tracker, "000");
    clocks(tracker, "10000"
                    "11");
    EXPECT_EQ(tracker.take().steps,
              (Steps{Idle{microseconds(3), true}, shiftOf(Register::data, 3, runTestIdle)}));
    clocks(tracker, "0");
    EXPECT_TRUE(tracker.take().steps.empty()) << "a scan passes Run-Test/Idle anyway";
}

TEST(TapTracker, LevelsOutsideOfShiftAreHigh) {
    auto tracker = trackerAt(testLogicReset);
    for (const char tms : std::string_view("0100"))
        tracker.clock(tms == '1', false, true);
    tracker.readTdo();
    EXPECT_TRUE(tracker.awaitsPort()) << "the controllers are in Shift";
    const auto taken = tracker.take();
    EXPECT_EQ(taken.wanted.front(), (TdoRun{{}, 0, 4}));
    EXPECT_EQ(wantedLevels({taken.wanted.front()}, {}), BitString(4, true));
}

TEST(TapTracker, LevelWithoutClockLeadsToPinsUntilIdle) {
    auto tracker = trackerAt(runTestIdle);
    clocks(tracker, "100"
                    "00");
    tracker.readTdo();
    EXPECT_EQ(tracker.take().steps, (Steps{shiftOf(Register::data, 2, pauseDr), PinClock{true, true, false},
                                           PinClock{false, true, false}, ReadTdo{}}));
    tracker.clock(true, false, true);
    clocks(tracker, "1");
    tracker.clock(false, true, true);
    const auto taken = tracker.take();
    EXPECT_EQ(taken.steps, (Steps{PinClock{true, false, true}, PinClock{true, false, false},
                                  PinClock{false, true, false}, ReleasePins{}}));
    EXPECT_EQ(taken.wanted, (std::vector<TdoRun>{{0, 0, 1}, {{}, 0, 1}}));
    clocks(tracker, "100"
                    "1"
                    "10");
    EXPECT_EQ(tracker.take().steps, (Steps{shiftOf(Register::data, 1, runTestIdle)}));
}

TEST(TapTracker, ControllersFoundWithinScanAreDrivenByPins) {
    auto tracker = trackerAt(shiftIr);
    clocks(tracker, "110");
    EXPECT_EQ(tracker.take().steps, (Steps{PinClock{true, false, false}, PinClock{true, false, false},
                                           PinClock{false, false, false}, ReleasePins{}}));
}

TEST(TapTracker, ControllersFoundInPauseGoOnWithTheirScan) {
    auto tracker = trackerAt(pauseDr);
    clocks(tracker, "10"
                    "01"
                    "10");
    EXPECT_EQ(tracker.take().steps, (Steps{shiftOf(Register::data, 2, runTestIdle)}));
}

TEST(TapTracker, TrstResetsAndHoldsTheControllers) {
    auto tracker = trackerAt(runTestIdle);
    clocks(tracker, "100"
                    "0");
    tracker.setTrst(false);
    tracker.setTrst(false);
    tracker.clock(false, true, true);
    EXPECT_EQ(tracker.state(), testLogicReset);
    tracker.setTrst(true);
    const auto taken = tracker.take();
    EXPECT_EQ(taken.steps, (Steps{shiftOf(Register::data, 1, pauseDr), Trst{true, false},
                                  Move{testLogicReset}, Trst{true, true}}));
    EXPECT_EQ(taken.wanted, (std::vector<TdoRun>{{{}, 0, 1}}));
}

TEST(TapTracker, PinsAreLetGoOfWhenTheClientGoes) {
    auto tracker = trackerAt(runTestIdle);
    tracker.letGo();
    EXPECT_TRUE(tracker.take().steps.empty());
    clocks(tracker, "100");
    tracker.readTdo();
    tracker.letGo();
    EXPECT_EQ(tracker.take().steps.back(), Step(ReleasePins{}));
}

TEST(TapTracker, TheNextClientFindsTrstReleased) {
    auto tracker = trackerAt(runTestIdle);
    tracker.setTrst(false);
    tracker.letGo();
    EXPECT_EQ(tracker.take().steps, (Steps{Trst{true, false}, Move{testLogicReset}, Trst{true, true}}));
    tracker.letGo();
    EXPECT_TRUE(tracker.take().steps.empty());
}

TEST(TapTracker, HoldsABoundedAmountWhateverTheClientClocks) {
    auto tracker = trackerAt(runTestIdle);
    const auto before = tracker.heldBits();
    clocks(tracker, "11110");
    EXPECT_GT(tracker.heldBits(), before);
}

/// A client that wanders through the states, and reads and waits where it likes.
class Wanderer {
public:
    explicit Wanderer(unsigned seed)
        : random_(seed) {}

    void step() {
        if (isOneOf(2000)) {
            setTrst(false);
            if (isOneOf(2))
                clock();
            setTrst(true);
        }
        if (isOneOf(300)) {
            tracker_.readTdo();
            expected_.append(straight_.tdo());
        }
        clock();
        if (isOneOf(std::uint32_t{1} << random_() % 9))
            take();
        else if (tracker_.heldBits() > 5000)
            take();
    }

    void end() {
        // Five ones and a zero end every scan.
        for (const bool tms : {true, true, true, true, true, false})
            clock(tms);
        take();
        EXPECT_FALSE(port_.usesPins());
        EXPECT_EQ(static_cast<unsigned>(tracker_.state()), straight_.state());
        EXPECT_EQ(driven_.state(), straight_.state());
        EXPECT_TRUE(driven_.events == straight_.events);
        EXPECT_EQ(driven_.events.size(), straight_.events.size());
        EXPECT_EQ(driven_.shiftedBits, straight_.shiftedBits);
        EXPECT_GE(driven_.idleClocks, straight_.idleClocks);
        EXPECT_EQ(driven_.user, straight_.user);
        EXPECT_EQ(driven_.instruction, straight_.instruction);
        EXPECT_EQ(expected_.size(), 0u);
    }

    std::uint64_t shiftedBits() const { return straight_.shiftedBits; }
    std::size_t events() const { return straight_.events.size(); }
    std::size_t comparedBits = 0;
    std::size_t differentBits = 0;

private:
    bool isOneOf(std::uint32_t count) { return random_() % count == 0; }

    void setTrst(bool level) {
        tracker_.setTrst(level);
        trst_ = level;
        if (!level)
            straight_.reset();
    }

    void clock() {
        const bool stays = straight_.isShifting() && !isOneOf(12);
        clock(!stays && random_() % 2 != 0);
    }

    void clock(bool tms) {
        const bool tdi = random_() % 2 != 0;
        const bool isRead = random_() % 3 != 0;
        tracker_.clock(tms, tdi, isRead);
        const bool level = trst_ ? straight_.clock(tms, tdi) : true;
        if (isRead)
            expected_.append(level);
    }

    void take() {
        const auto taken = tracker_.take();
        const auto levels = wantedLevels(taken.wanted, port_.run(taken.steps));
        ASSERT_EQ(levels.size(), expected_.size());
        comparedBits += levels.size();
        for (std::size_t bit = 0; bit < levels.size(); ++bit)
            differentBits += levels.at(bit) != expected_.at(bit) ? 1u : 0u;
        expected_ = {};
    }

    std::mt19937 random_;
    ChainModel straight_;
    ChainModel driven_;
    ModelPort port_{driven_};
    TapTracker tracker_ = trackerAt(testLogicReset);
    bool trst_ = true;
    BitString expected_;
};

TEST(TapTracker, LeavesNoDifferenceOnRandomWalks) {
    std::uint64_t shifted = 0;
    std::uint64_t events = 0;
    for (unsigned seed = 1; shifted < 1'200'000; ++seed) {
        Wanderer wanderer(seed);
        for (int step = 0; step < 20000; ++step)
            wanderer.step();
        wanderer.end();
        shifted += wanderer.shiftedBits();
        events += wanderer.events();
        ASSERT_EQ(wanderer.differentBits, 0u) << "seed " << seed;
        ASSERT_GT(wanderer.comparedBits, 10000u);
        ASSERT_FALSE(HasFailure()) << "seed " << seed;
    }
    EXPECT_GT(events, 10000u);
}

} // namespace
