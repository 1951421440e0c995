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

constexpr std::uint64_t nearUser = 0x20;

std::vector<TapDescription> twoTaps() {
    const auto boundary = [](std::uint64_t sample, std::size_t cells) {
        return TapRegister{sample, cells, PackedBits::ofNumber(cells, 0x55)};
    };
    const auto user = [](std::uint64_t instruction) {
        return TapRegister{.instruction = instruction, .length = 32, .keeps = true};
    };
    return {{"near", 8, nearId, 0x02, 0b01, {boundary(0x01, 5), user(nearUser)}},
            {"far", 5, farId, 0x06, 0b01, {boundary(0x02, 7), user(0x0A)}}};
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
    PackedBits& user() { return port.chain().taps()[0].content(nearUser); }
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
    EXPECT_EQ(user().number(), 0x12345678u);
    EXPECT_EQ(shifted(data, 33, {0, 0, 0, 0, 0}), (Bytes{0x78, 0x56, 0x34, 0x12, 0x00}));
    EXPECT_EQ(user().number(), 0u);
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

TEST_F(JtagPortTest, NothingShiftsWhileTrstIsLow) {
    shifted(instruction, 13, {0xFF, 0x1F});
    drive(Pin::trst, false);
    EXPECT_EQ(shifted(instruction, 13, {0x20, 0x0A}), (Bytes{0xFF, 0x1F}));
    EXPECT_EQ(port.moveTo(1), return_code::done);
    EXPECT_EQ(port.sleep(true), return_code::done);
    EXPECT_EQ(port.state(), 0);
    drive(Pin::trst, true);
    EXPECT_EQ(shifted(data, 32, {0, 0, 0, 0}), (Bytes{0xC3, 0xD0, 0x45, 0x2A}));
}

TEST_F(JtagPortTest, ATapWithoutAnIdentificationIsInBypassAfterReset) {
    JtagPort bare(board, {{.name = "bare", .irLength = 4, .irCapture = 0b1101}, twoTaps()[1]});
    EXPECT_EQ(bare.shift(instruction, 9, Bytes{0, 0}).captured, (Bytes{0x1D, 0}));
    bare.moveTo(0);
    EXPECT_EQ(bare.shift(data, 33, Bytes(5)).captured, (Bytes{0x86, 0xC1, 0x63, 0x2F, 0x00}));
}

TEST_F(JtagPortTest, AnInstructionRegisterHasUpTo64Bits) {
    const std::uint64_t wide = 0x8000'0001'0000'0002;
    JtagPort port64(
        board,
        {{.name = "wide", .irLength = 64, .registers = {{wide, 72, PackedBits::ofNumber(72, 0xAB), true}}}});
    EXPECT_EQ(port64.shift(instruction, 64, Bytes{2, 0, 0, 0, 1, 0, 0, 0x80}).captured,
              (Bytes{1, 0, 0, 0, 0, 0, 0, 0}));
    EXPECT_EQ(port64.chain().taps()[0].instruction(), wide);
    const Bytes written{9, 8, 7, 6, 5, 4, 3, 2, 1};
    EXPECT_EQ(port64.shift(data, 72, written).captured, (Bytes{0xAB, 0, 0, 0, 0, 0, 0, 0, 0}));
    EXPECT_EQ(port64.shift(data, 72, written).captured, written);
    for (const unsigned length : {0u, 1u, 65u})
        EXPECT_THROW(Tap({.irLength = length}), std::invalid_argument) << length;
    EXPECT_THROW(Tap({.irLength = 4, .registers = {{.instruction = 2}}}), std::invalid_argument);
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
    user() = PackedBits(32);
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
}

TEST_F(JtagPortTest, AShiftIsAsLongAsItsDataUnlessItRepeats) {
    constexpr std::int32_t bits = 6'000'000;
    const Bytes long_(bits / 8, 0xA5);
    shifted(instruction, 13, {0xFF, 0x1F});
    const auto captured = shifted(data, bits, long_);
    // Two bits later than it went in.
    EXPECT_EQ(captured[0], 0x94);
    EXPECT_EQ(captured, [] {
        Bytes expected(bits / 8, 0x96);
        expected[0] = 0x94;
        return expected;
    }());
    change(data, [](auto& options) { options.repeat = {1, true}; });
    EXPECT_EQ(port.shift(data, bits, long_).code, return_code::badArgument);
    change(data, [](auto& options) {
        options.repeat.enable = false;
        options.retry = {1, true};
    });
    EXPECT_EQ(port.shift(data, bits, long_).code, return_code::done) << "nothing is compared";
    change(data, [&](auto& options) { options.expectation = {bits, long_, long_}; });
    EXPECT_EQ(port.shift(data, bits, long_).code, return_code::badArgument);
}

TEST_F(JtagPortTest, AnExpectationIsBounded) {
    JtagPort::ShiftOptions options;
    const auto bytes = static_cast<std::size_t>(JtagPort::mostExpectedBits) / 8;
    options.expectation = {JtagPort::mostExpectedBits, Bytes(bytes), Bytes(bytes)};
    EXPECT_EQ(port.setOptions(data, options), return_code::done);
    options.expectation = {JtagPort::mostExpectedBits + 1, Bytes(bytes + 1), Bytes(bytes + 1)};
    EXPECT_EQ(port.setOptions(data, options), return_code::badArgument);
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
    EXPECT_EQ(port.shift(data, 1'000'000, Bytes(125'000)).code, return_code::badArgument);
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
    user() = PackedBits::ofNumber(32, 7);
    board->setPower(false);
    EXPECT_EQ(shifted(data, 12, {0, 0}), (Bytes{0xFF, 0x0F}));
    EXPECT_EQ(port.state(), 0);
    board->setPower(true);
    EXPECT_EQ(user().number(), 0u);
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
    for (std::int32_t divider = 1; divider <= 50'000; ++divider) {
        ASSERT_TRUE(port.setFrequency(50'000'000 / divider));
        const auto told = port.frequency();
        ASSERT_EQ(told, static_cast<std::uint32_t>(50'000'000 / divider));
        ASSERT_TRUE(port.setFrequency(static_cast<std::int32_t>(told)));
        ASSERT_EQ(port.frequency(), told) << "what was told can be set again";
    }
    EXPECT_TRUE(port.setFrequency(30'000'000));
    EXPECT_EQ(port.divider(), 2u);
    EXPECT_EQ(port.frequency(), 25'000'000u);
}

} // namespace
