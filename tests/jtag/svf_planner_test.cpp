#include <chrono>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tavo/jtag/svf/planner.h>

namespace {

using namespace TAVO::jtag;
using svf::Batch;
using svf::PlanOptions;
using svf::StopAt;
using TAVO::HWDebug::nextState;
using TAVO::HWDebug::shortestPath;
using enum TAVO::HWDebug::TapState;
using Bytes = std::vector<std::uint8_t>;
using std::chrono::microseconds;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

/// At 1 MHz.
std::vector<Batch> batchesOf(const std::string& text, PlanOptions options = {}) {
    svf::Parser parser(text, "f.svf");
    svf::Planner planner(parser, options, [](std::uint64_t clocks) {
        return microseconds(static_cast<std::int64_t>(clocks));
    });
    std::vector<Batch> batches;
    while (auto batch = planner.next())
        batches.push_back(std::move(*batch));
    return batches;
}

Steps stepsOf(const std::string& text) {
    Steps steps;
    for (auto& batch : batchesOf(text))
        steps.insert(steps.end(), batch.steps.begin(), batch.steps.end());
    return steps;
}

std::string planErrorOf(const std::string& text) {
    try {
        batchesOf(text);
    } catch (const svf::SvfError& error) {
        return error.what();
    }
    return "none";
}

/// What the device makes of steps, as its TMS from Test-Logic-Reset on, at 1 MHz.
class TmsModel {
public:
    std::string of(const Steps& steps) {
        for (const auto& step : steps)
            std::visit([this](const auto& kind) { take(kind); }, step);
        return tms_;
    }

private:
    void clock(bool tms) {
        tms_ += tms ? '1' : '0';
        state_ = nextState(state_, tms);
    }
    void follow(TapState state) {
        for (const bool tms : shortestPath(state_, state))
            clock(tms);
    }
    void take(const Shift& shift) {
        follow(shift.target == Register::data ? shiftDr : shiftIr);
        for (std::size_t bit = 0; bit < shift.bits.size(); ++bit)
            clock(bit + 1 == shift.bits.size());
        follow(shift.end);
    }
    void take(const Move& move) { follow(move.to); }
    void take(const Idle& idle) {
        for (auto left = idle.duration.count(); idle.isClocked && left > 0; --left)
            clock(false);
    }
    void take(const PinClock& pins) { clock(pins.tms); }
    void take(const Trst&) { state_ = testLogicReset; }
    void take(const ReleasePins&) {}
    void take(const ReadTdo&) {}

    TapState state_ = testLogicReset;
    std::string tms_;
};

// The expected clocks were observed at the pins of OpenOCD 0.12, which played these files by remote_bitbang.

TEST(SvfPlanner, AScanGoesOnWhereOneOfItsRegisterPaused) {
    const auto steps = stepsOf("ENDDR DRPAUSE; SDR 8 TDI (A5); SDR 4 TDI (3); ENDDR IDLE; SDR 3 TDI (5);");
    EXPECT_EQ(TmsModel().of(steps), "0100"    // Capture, Shift
                                    "0000000" // seven bits
                                    "10"      // the eighth, Pause
                                    "10"      // Exit2, Shift
                                    "00010"
                                    "10"
                                    "00110");
    for (const auto& step : steps)
        EXPECT_FALSE(std::holds_alternative<PinClock>(step));
}

TEST(SvfPlanner, ClocksAreThoseOfOtherPlayers) {
    EXPECT_EQ(TmsModel().of(stepsOf(R"(ENDDR DRPAUSE;
SDR 8 TDI (A5);
SDR 4 TDI (3);
ENDDR IDLE;
SDR 3 TDI (5);
STATE IDLE;
ENDIR IRPAUSE;
SIR 6 TDI (2A);
SIR 6 TDI (3F);
SDR 2 TDI (1);
ENDDR DRPAUSE;
SDR 2 TDI (1);
STATE DRPAUSE;
STATE DREXIT2 DRSHIFT DRSHIFT DREXIT1 DRPAUSE;
SDR 2 TDI (3);
RUNTEST DRPAUSE 3 TCK ENDSTATE IDLE;
RUNTEST IDLE 2 TCK ENDSTATE IRPAUSE;
STATE IREXIT2 IRUPDATE DRSELECT DRCAPTURE DREXIT1 DRUPDATE IDLE;
HDR 2 TDI (3);
TDR 1 TDI (0);
SDR 2 TDI (1);
)")),
              "010000000001010000101000110011000000010100000010111000"
              "110100010111010100101001000011000110101110110100000010");
}

TEST(SvfPlanner, AFileBeginsInReset) {
    EXPECT_THAT(stepsOf("STATE IDLE;"), ElementsAre(Step(Move{testLogicReset}), Step(Move{runTestIdle})));
    EXPECT_THAT(stepsOf("ENDIR IDLE; HDR 2 TDI (1);"), IsEmpty());
    EXPECT_THAT(batchesOf(""), IsEmpty());
}

TEST(SvfPlanner, MovesTakeTheDefaultPaths) {
    const std::vector<std::pair<std::string, TapState>> states{
        {"RESET", testLogicReset}, {"IDLE", runTestIdle}, {"DRPAUSE", pauseDr}, {"IRPAUSE", pauseIr}};
    // From RESET to the first and on to the second state.
    const std::vector<std::string> paths{
        "1",
        "0",
        "01010",
        "011010", // RESET
        "0111",
        "00",
        "01010",
        "011010", // IDLE
        "0101011111",
        "01010110",
        "01010111010",
        "010101111010", // DRPAUSE
        "01101011111",
        "011010110",
        "01101011"
        "1010",
        "0110101111010", // IRPAUSE
    };
    for (std::size_t from = 0; from < states.size(); ++from)
        for (std::size_t to = 0; to < states.size(); ++to) {
            auto tms = TmsModel().of(stepsOf((from == 0 ? "" : "STATE " + states[from].first + ";") +
                                             "STATE " + states[to].first + ";"));
            EXPECT_EQ(tms, paths[from * 4 + to]) << states[from].first << " to " << states[to].first;
        }
}

TEST(SvfPlanner, APathThatTheDeviceWouldTakeIsAMove) {
    EXPECT_THAT(stepsOf("STATE IDLE; STATE DRSELECT DRCAPTURE DREXIT1 DRPAUSE;"),
                ElementsAre(Step(Move{testLogicReset}), Step(Move{runTestIdle}), Step(Move{pauseDr})));
    EXPECT_THAT(stepsOf("STATE IDLE IDLE;"),
                ElementsAre(Step(Move{testLogicReset}), Step(PinClock{.tms = false}),
                            Step(PinClock{.tms = false}), Step(ReleasePins{})));
}

TEST(SvfPlanner, APathWithoutClockIsNamed) {
    EXPECT_EQ(planErrorOf("STATE IDLE;\nSTATE DRPAUSE IDLE;"),
              "f.svf:2: STATE: no clock leads from IDLE to DRPAUSE");
    EXPECT_EQ(planErrorOf("ENDDR DRPAUSE; SDR 1 TDI (0);\n\nSTATE DREXIT2 DRCAPTURE IDLE;"),
              "f.svf:3: STATE: no clock leads from DREXIT2 to DRCAPTURE");
}

TEST(SvfPlanner, ScansJoinWhatStandsAroundThem) {
    const auto batches = batchesOf("HIR 3 TDI (5); TIR 2 TDI (0) TDO (1);\nHDR 4 TDI (9) TDO (8) MASK (C);\n"
                                   "SIR 4 TDI (A); SDR 8 TDI (FF) TDO (0F);");
    ASSERT_THAT(batches, SizeIs(1));
    const auto& ir = std::get<Shift>(batches[0].steps.at(1));
    EXPECT_EQ(ir.bits, BitString(9, {0x55, 0x00}));
    EXPECT_TRUE(ir.isRead);
    const auto& dr = std::get<Shift>(batches[0].steps.at(2));
    EXPECT_EQ(dr.bits, BitString(12, {0xF9, 0x0F}));
    ASSERT_THAT(batches[0].checks, SizeIs(2));
    ASSERT_THAT(batches[0].checks[0].parts, SizeIs(1));
    EXPECT_EQ(batches[0].checks[0].parts[0].first, 7u);
    EXPECT_EQ(batches[0].checks[0].parts[0].line, 1u);
    ASSERT_THAT(batches[0].checks[1].parts, SizeIs(2));
    EXPECT_EQ(batches[0].checks[1].parts[1].first, 4u);
    EXPECT_EQ(batches[0].bits, 21u);
}

TEST(SvfPlanner, NothingIsCheckedUnderAMaskOfZeros) {
    const auto batches = batchesOf("SDR 9 TDI (0) TDO (1FF) MASK (0);");
    EXPECT_THAT(batches.at(0).checks, IsEmpty());
    EXPECT_FALSE(std::get<Shift>(batches[0].steps.at(1)).isRead);
    EXPECT_THAT(batchesOf("SDR 9 TDI (0) TDO (1FF);", {.compares = false}).at(0).checks, IsEmpty());
}

TEST(SvfPlanner, RunTestClocksAndThenWaits) {
    EXPECT_THAT(stepsOf("RUNTEST 5 TCK 1E-3 SEC ENDSTATE DRPAUSE; RUNTEST 2E-6 SEC;"),
                ElementsAre(Step(Move{testLogicReset}), Step(Move{runTestIdle}),
                            Step(Idle{microseconds(5), true}), Step(Idle{microseconds(1000), false}),
                            Step(Move{pauseDr}), Step(Move{runTestIdle}), Step(Idle{microseconds(2), false}),
                            Step(Move{pauseDr})));
    // A run state is the end state too, if there is no other.
    EXPECT_THAT(stepsOf("RUNTEST 1 TCK ENDSTATE RESET; RUNTEST IRPAUSE 1 TCK;"),
                ElementsAre(Step(Move{testLogicReset}), Step(Move{runTestIdle}),
                            Step(Idle{microseconds(1), true}), Step(Move{testLogicReset}),
                            Step(Move{pauseIr}), Step(Idle{microseconds(1), true})));
}

TEST(SvfPlanner, ClocksInResetKeepItThere) {
    EXPECT_EQ(TmsModel().of(stepsOf("RUNTEST RESET 3 TCK 1 SEC; STATE IDLE;")), "1110");
    EXPECT_EQ(planErrorOf("\nRUNTEST RESET 10001 TCK;"),
              "f.svf:2: RUNTEST: 10001 clocks in RESET are more than 10000");
}

TEST(SvfPlanner, LongWaitsAreDistributed) {
    microseconds waited{0};
    for (const auto& batch :
         batchesOf("RUNTEST 300000 TCK 7 SEC ENDSTATE DRPAUSE;", {.stopAt = StopAt::end})) {
        microseconds ofBatch{0};
        for (const auto& step : batch.steps)
            if (const auto* idle = std::get_if<Idle>(&step))
                ofBatch += idle->duration;
        EXPECT_LE(ofBatch, svf::Planner::longestWait);
        EXPECT_EQ(ofBatch, batch.waits);
        waited += ofBatch;
    }
    EXPECT_EQ(waited, microseconds(7'300'000));
    EXPECT_EQ(stepsOf("RUNTEST 7 SEC ENDSTATE DRPAUSE;").back(), Step(Move{pauseDr}));
}

TEST(SvfPlanner, ClocksOfMoreThanADayAreRefused) {
    svf::Parser parser("RUNTEST 4294967295 TCK;", "f.svf");
    svf::Planner planner(parser, {}, [](std::uint64_t clocks) { return std::chrono::milliseconds(clocks); });
    EXPECT_THROW(planner.next(), svf::SvfError);
}

TEST(SvfPlanner, TrstResetsTheControllers) {
    EXPECT_THAT(stepsOf("TRST Z; STATE IDLE; TRST ON; RUNTEST 1E-6 SEC; TRST OFF; STATE IDLE; TRST Z;"),
                ElementsAre(Step(Move{testLogicReset}), Step(Trst{false, true}), Step(Move{runTestIdle}),
                            Step(Trst{true, false}), Step(Move{testLogicReset}), Step(Move{runTestIdle}),
                            Step(Idle{microseconds(1), false}), Step(Trst{true, true}),
                            Step(Move{testLogicReset}), Step(Move{runTestIdle}), Step(Trst{false, true})));
    EXPECT_THAT(stepsOf("TRST ABSENT;"), IsEmpty());
}

TEST(SvfPlanner, FrequencyStandsAlone) {
    const auto batches = batchesOf("FREQUENCY 1E6 HZ; STATE IDLE; FREQUENCY; STATE RESET;");
    ASSERT_THAT(batches, SizeIs(4));
    EXPECT_EQ(batches[0].frequency->hertz, 1'000'000);
    EXPECT_THAT(batches[0].steps, IsEmpty());
    EXPECT_EQ(batches[2].frequency->hertz, std::nullopt);
}

std::vector<std::size_t> checksIn(const std::string& text, StopAt stopAt) {
    std::vector<std::size_t> checks;
    for (const auto& batch : batchesOf(text, {.stopAt = stopAt}))
        checks.push_back(batch.checks.size());
    return checks;
}

std::string repeated(const std::string& text, std::size_t count) {
    std::string all;
    for (; count > 0; --count)
        all += text;
    return all;
}

TEST(SvfPlanner, OnlyCheckedScansFollowACheckedScanInItsBatch) {
    const std::string checked = "SDR 8 TDI (0) TDO (0);", plain = "SDR 8;", moves = "STATE IDLE;";
    EXPECT_THAT(checksIn(checked + plain + plain + checked + moves, StopAt::check), ElementsAre(1, 1, 0));
    EXPECT_THAT(checksIn(checked + checked + "ENDDR IDLE; HDR 0;" + checked + moves, StopAt::check),
                ElementsAre(3, 0));
    EXPECT_THAT(checksIn(repeated(checked + "RUNTEST 1 TCK;", 2000), StopAt::check), SizeIs(2001));
    EXPECT_THAT(checksIn(repeated(checked, 2000), StopAt::check), ElementsAre(2000));
}

TEST(SvfPlanner, LargerBatchesHaveAHundredCheckedScansOrAll) {
    const auto text = repeated("SDR 8 TDI (0) TDO (0); RUNTEST 1 TCK;", 2000);
    auto expected = std::vector<std::size_t>(20, 100);
    expected.push_back(0); // the last RUNTEST
    EXPECT_EQ(checksIn(text, StopAt::batch), expected);
    EXPECT_THAT(checksIn(text, StopAt::end), ElementsAre(2000));
}

TEST(SvfPlanner, ABatchHasNoMoreDataThanAboutAMegabyte) {
    const auto batches =
        batchesOf("SDR 800000 TDI (0);" + repeated("SDR 800000;", 99), {.stopAt = StopAt::end});
    std::size_t scans = 0;
    for (const auto& batch : batches) {
        EXPECT_LE(batch.scans, 6u);
        scans += batch.scans;
    }
    EXPECT_EQ(scans, 100u);
}

TEST(SvfPlanner, OnlyScansThatBeginAnewArePolled) {
    const auto shifts = [](const std::string& text) {
        std::vector<std::optional<Poll>> polls;
        for (const auto& batch : batchesOf(text, {.retries = 7}))
            for (const auto& step : batch.steps)
                if (const auto* shift = std::get_if<Shift>(&step))
                    polls.push_back(shift->poll);
        return polls;
    };
    const auto polls =
        shifts("HDR 2 TDI (3); SDR 4 TDI (5) TDO (9) MASK (B); SDR 4; ENDDR DRPAUSE; SDR 4 TDO (1);"
               "ENDDR IDLE; SDR 4 TDO (1); SDR 4 TDO (1); ENDDR RESET; SDR 4 TDO (1);");
    ASSERT_THAT(polls, SizeIs(6));
    EXPECT_EQ(polls[0], (Poll{BitString(6, Bytes{0x24}), BitString(6, Bytes{0x2C}), 7}));
    EXPECT_EQ(polls[1], std::nullopt);
    EXPECT_EQ(polls[2], std::nullopt);
    EXPECT_EQ(polls[3], std::nullopt);
    EXPECT_NE(polls[4], std::nullopt);
    EXPECT_EQ(polls[5], std::nullopt);
}

} // namespace
