#include <functional>

#include <gtest/gtest.h>

#include <tavo/simulator/models/jtag_port.h>
#include <tavo/simulator/return_codes.h>
#include <tests/simulator/models/hand_clock.h>

namespace {

using namespace TAVO::simulator;
using Bytes = std::vector<std::uint8_t>;
using enum JtagPort::Register;
using Pin = JtagPort::Pin;

constexpr std::uint32_t nearId = 0x2A45D0C3;
constexpr std::uint32_t farId = 0x17B1E0C3;

std::vector<TapDescription> twoTaps() {
    return {{"near", 8, nearId, 0x02, 0x01, 5, 0x20}, {"far", 5, farId, 0x06, 0x02, 7, 0x0A}};
}

struct JtagPortTest : testing::Test, tests::HandClock {
    JtagPort port{board, twoTaps()};

    JtagPortTest() { board->setPower(true); }

    Bytes shifted(JtagPort::Register target, std::int32_t bits, const Bytes& data) {
        const auto outcome = port.shift(target, bits, data);
        EXPECT_EQ(outcome.code, return_code::done);
        return outcome.captured;
    }
    void change(JtagPort::Register target, const std::function<void(JtagPort::ShiftOptions&)>& how) {
        auto options = port.options(target);
        how(options);
        ASSERT_EQ(port.setOptions(target, options), return_code::done);
    }
    void drive(Pin pin, bool level) { ASSERT_EQ(port.setPin(pin, {true, level}), return_code::done); }
    bool pulse(bool tms, bool tdi) {
        drive(Pin::tms, tms);
        drive(Pin::tdi, tdi);
        const bool sampled = port.tdo();
        drive(Pin::tck, true);
        drive(Pin::tck, false);
        return sampled;
    }
};

const Bytes noughts8(8, 0x00);

TEST_F(JtagPortTest, AfterResetTheDataRegisterHoldsTheIdcodesNearestTdoFirst) {
    ASSERT_EQ(port.moveTo(0), return_code::done);
    EXPECT_EQ(shifted(data, 64, noughts8), (Bytes{0xC3, 0xD0, 0x45, 0x2A, 0xC3, 0xE0, 0xB1, 0x17}));
}

TEST_F(JtagPortTest, AnIdcodeByPinsIsTheOneByShifts) {
    drive(Pin::tck, false);
    for (int clock = 0; clock < 5; ++clock)
        pulse(true, true);
    for (const bool tms : {false, true, false, false})
        pulse(tms, true);
    EXPECT_EQ(port.state(), static_cast<std::int32_t>(TapState::shiftDr));
    std::uint32_t idcode = 0;
    for (unsigned bit = 0; bit < 32; ++bit)
        idcode |= std::uint32_t{pulse(bit == 31, false)} << bit;
    EXPECT_EQ(idcode, nearId);
}

TEST_F(JtagPortTest, EveryCapturedInstructionEndsIn01) {
    // 13 bits: the near one's eight first, then the far one's five.
    EXPECT_EQ(shifted(instruction, 13, {0xFF, 0x1F}), (Bytes{0x01, 0x01}));
}

TEST_F(JtagPortTest, BypassDelaysByOneBitForEachTap) {
    shifted(instruction, 13, {0xFF, 0x1F});
    EXPECT_EQ(shifted(data, 16, {0xA5, 0x5A}), (Bytes{0x94, 0x6A}));
}

TEST_F(JtagPortTest, TheUserRegisterKeepsWhatIsWritten) {
    // Near: USER (0x20); far: BYPASS (0x1F), one bit, behind the 32 of the near one.
    shifted(instruction, 13, {0x20, 0x1F});
    shifted(data, 33, {0x78, 0x56, 0x34, 0x12, 0x00});
    EXPECT_EQ(port.chain().taps()[0].user(), 0x12345678u);
    EXPECT_EQ(shifted(data, 33, {0, 0, 0, 0, 0}), (Bytes{0x78, 0x56, 0x34, 0x12, 0x00}));
    EXPECT_EQ(port.chain().taps()[0].user(), 0u);
}

TEST_F(JtagPortTest, SampleCapturesTheBoundaryCells) {
    shifted(instruction, 13, {0x01, 0x02});
    // 5 and 7 cells, each alternating from 1: 10101 and 1010101.
    EXPECT_EQ(shifted(data, 12, {0, 0}), (Bytes{0xB5, 0x0A}));
}

TEST_F(JtagPortTest, APauseResumesTheSameShift) {
    port.moveTo(0);
    change(data, [](auto& options) { options.terminationState = 6; });
    auto captured = shifted(data, 8, {0x00});
    EXPECT_EQ(port.state(), 6);
    for (int part = 0; part < 3; ++part)
        captured.push_back(shifted(data, 8, {0x00})[0]);
    EXPECT_EQ(captured, (Bytes{0xC3, 0xD0, 0x45, 0x2A}));
    change(data, [](auto& options) { options.terminationState = 1; });
    shifted(data, 0, {});
    EXPECT_EQ(port.state(), 1);
}

TEST_F(JtagPortTest, AShiftEndsInTheTerminationStateOfItsRegister) {
    change(instruction, [](auto& options) { options.terminationState = 13; });
    change(data, [](auto& options) { options.terminationState = 0; });
    shifted(instruction, 13, {0xFF, 0x1F});
    EXPECT_EQ(port.state(), 13);
    shifted(data, 1, {0x00});
    EXPECT_EQ(port.state(), 0);
}

TEST_F(JtagPortTest, OnlyRestingStatesAreAccepted) {
    for (std::int32_t state = -1; state <= 16; ++state) {
        const bool resting = state == 0 || state == 1 || state == 6 || state == 13;
        EXPECT_EQ(port.moveTo(state), return_code::badUnless(resting)) << state;
        auto options = port.options(data);
        options.terminationState = state;
        EXPECT_EQ(port.setOptions(data, options), return_code::badUnless(resting)) << state;
    }
}

TEST_F(JtagPortTest, TrstLowResetsAtOnceAndHolds) {
    shifted(instruction, 13, {0xFF, 0x1F});
    drive(Pin::trst, false);
    EXPECT_EQ(port.state(), 0);
    drive(Pin::tms, false);
    drive(Pin::tck, false);
    drive(Pin::tck, true);
    EXPECT_EQ(port.state(), 0);
    drive(Pin::trst, true);
    EXPECT_EQ(shifted(data, 32, {0, 0, 0, 0}), (Bytes{0xC3, 0xD0, 0x45, 0x2A}));
}

TEST_F(JtagPortTest, AnExpectationComparesUnderItsMask) {
    port.moveTo(0);
    change(data, [](auto& options) {
        options.expectation = {32, {0xC3, 0xD0, 0x45, 0x00}, {0xFF, 0xFF, 0xFF, 0x00}};
    });
    EXPECT_EQ(port.shift(data, 32, Bytes(4)).code, return_code::done);
    port.moveTo(0);
    change(data, [](auto& options) { options.expectation.mask[3] = 0x02; });
    const auto outcome = port.shift(data, 32, Bytes(4));
    EXPECT_EQ(outcome.code, return_code::mismatch);
    EXPECT_EQ(outcome.captured, (Bytes{0xC3, 0xD0, 0x45, 0x2A}));
    EXPECT_EQ(port.shift(data, 31, Bytes(4)).code, return_code::done)
        << "another count of bits is not compared";
}

TEST_F(JtagPortTest, ARetryShiftsAgainUntilTheBitsAreTheExpectedOnes) {
    shifted(instruction, 13, {0x20, 0x1F});
    // The first attempt captures 0 and writes 1, the second captures 1.
    change(data, [](auto& options) {
        options.expectation = {33, {0x01, 0, 0, 0, 0}, {0xFF, 0xFF, 0xFF, 0xFF, 0x00}};
        options.retry = {1, true};
    });
    EXPECT_EQ(port.shift(data, 33, Bytes{0x01, 0, 0, 0, 0}).code, return_code::done);
    port.chain().taps()[0].setUser(0);
    change(data, [](auto& options) { options.retry.enable = false; });
    EXPECT_EQ(port.shift(data, 33, Bytes{0x01, 0, 0, 0, 0}).code, return_code::mismatch);
}

TEST_F(JtagPortTest, ARepeatGivesTheLastCapture) {
    shifted(instruction, 13, {0x20, 0x1F});
    change(data, [](auto& options) { options.repeat = {1, true}; });
    EXPECT_EQ(shifted(data, 33, {0x44, 0x33, 0x22, 0x11, 0}), (Bytes{0x44, 0x33, 0x22, 0x11, 0}));
}

TEST_F(JtagPortTest, WrongCountsAndLengthsAreRefused) {
    EXPECT_EQ(port.shift(data, -1, {}).code, return_code::badArgument);
    EXPECT_EQ(port.shift(data, 9, Bytes(1)).code, return_code::badArgument);
    EXPECT_EQ(port.shift(data, 8, Bytes(2)).code, return_code::badArgument);
    EXPECT_EQ(port.shift(data, JtagPort::mostBits + 1, Bytes(125'001)).code, return_code::badArgument);
    change(data, [](auto& options) { options.repeat = {1000, true}; });
    EXPECT_EQ(port.shift(data, JtagPort::mostBits, Bytes(125'000)).code, return_code::badArgument);
}

TEST_F(JtagPortTest, WhatTakesTooManyClocksIsRefusedWhateverTheyAreSpentOn) {
    const auto shift = [&] { return port.shift(data, 8, Bytes(1)).code; };
    change(data, [](auto& options) {
        options.preTck = options.postTck = 100;
        options.repeat = {1000, true};
    });
    EXPECT_EQ(shift(), return_code::done);
    change(data, [](auto& options) { options.preTck = options.postTck = 1000; });
    change(data, [](auto& options) {
        options.expectation = {8, Bytes(1), Bytes(1)};
        options.retry = {2, true};
    });
    EXPECT_EQ(shift(), return_code::badArgument) << "6 million, if no attempt succeeds before the last";
    change(data, [](auto& options) { options.preTck = options.postTck = 0; });
    EXPECT_EQ(shift(), return_code::done);
    change(data, [](auto& options) {
        options.expectation = {};
        options.repeat = {5, true};
    });
    EXPECT_EQ(port.shift(data, JtagPort::mostBits, Bytes(125'000)).code, return_code::badArgument);
}

TEST_F(JtagPortTest, NothingMovesWhileDisabled) {
    port.setEnabled(false);
    EXPECT_EQ(port.shift(data, 8, Bytes(1)).code, return_code::disabled);
    EXPECT_EQ(port.moveTo(1), return_code::disabled);
    EXPECT_EQ(port.setPin(Pin::tck, {true, true}), return_code::disabled);
    EXPECT_FALSE(port.pin(Pin::tck).driven);
}

TEST_F(JtagPortTest, WithoutPowerTdoReadsOnesAndUserRegistersAreLost) {
    shifted(instruction, 13, {0x20, 0x1F});
    port.chain().taps()[0].setUser(7);
    board->setPower(false);
    EXPECT_EQ(shifted(data, 12, {0, 0}), (Bytes{0xFF, 0x0F}));
    EXPECT_EQ(port.state(), 0);
    board->setPower(true);
    EXPECT_EQ(port.chain().taps()[0].user(), 0u);
    EXPECT_EQ(shifted(data, 32, {0, 0, 0, 0}), (Bytes{0xC3, 0xD0, 0x45, 0x2A}));
}

TEST_F(JtagPortTest, ExtraClocksRunInIdle) {
    change(data, [](auto& options) {
        options.preTck = 3;
        options.postTck = 2;
    });
    port.moveTo(6);
    shifted(data, 32, {0, 0, 0, 0});
    EXPECT_EQ(port.state(), 1);
    port.moveTo(0);
    EXPECT_EQ(shifted(data, 32, {0, 0, 0, 0}), (Bytes{0xC3, 0xD0, 0x45, 0x2A}));
}

TEST_F(JtagPortTest, TckRunningInASleepLeavesReset) {
    port.moveTo(0);
    EXPECT_EQ(port.sleep(false), return_code::done);
    EXPECT_EQ(port.state(), 0);
    EXPECT_EQ(port.sleep(true), return_code::done);
    EXPECT_EQ(port.state(), 1);
}

TEST_F(JtagPortTest, TheFrequencyIsTheNearestNotAbove) {
    EXPECT_FALSE(port.setFrequency(999));
    EXPECT_FALSE(port.setFrequency(50'000'001));
    EXPECT_TRUE(port.setFrequency(30'000'000));
    EXPECT_EQ(port.divider(), 2u);
    EXPECT_EQ(port.frequency(), 25'000'000u);
}

} // namespace
