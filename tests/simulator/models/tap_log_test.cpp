#include <string>

#include <gtest/gtest.h>

#include <tavo/simulator/models/jtag_port.h>
#include <tavo/simulator/models/tap_log.h>
#include <tests/simulator/models/hand_clock.h>

namespace {

using namespace TAVO::simulator;
using TapBytes = std::vector<std::uint8_t>;
using TapPin = JtagPort::Pin;
constexpr auto ir = JtagPort::Register::instruction;
constexpr auto dr = JtagPort::Register::data;

struct TapLogTest : testing::Test, tests::HandClock {
    std::string text;
    JtagPort port{board,
                  {{.name = "only",
                    .irLength = 6,
                    .idcode = 0x0362D093,
                    .idcodeInstruction = 0x09,
                    .irCapture = 0x35,
                    .registers = {{.instruction = 0x05, .length = 5}}}}};

    TapLogTest() {
        board->setPower(true);
        follow(TapLog::usualMostBits);
    }

    void follow(std::size_t mostBits) {
        port.setObserver(std::make_shared<TapLog>(
            "a.jtag", [this](std::string_view piece) { text += piece; }, mostBits));
    }
    void shift(JtagPort::Register target, std::int32_t bits, const TapBytes& data,
               TapState end = TapState::runTestIdle) {
        auto options = port.options(target);
        options.terminationState = static_cast<std::int32_t>(end);
        ASSERT_EQ(port.setOptions(target, options), 0);
        ASSERT_EQ(port.shift(target, bits, data).code, 0);
    }
    void move(TapState state) { ASSERT_EQ(port.moveTo(static_cast<std::int32_t>(state)), 0); }
    void drive(TapPin pin, bool level) { ASSERT_EQ(port.setPin(pin, {true, level}), 0); }
    void pulse(bool tms, bool tdi) {
        drive(TapPin::tms, tms);
        drive(TapPin::tdi, tdi);
        drive(TapPin::tck, false);
        drive(TapPin::tck, true);
    }
};

TEST_F(TapLogTest, TellsScansWithTheirLowestBitShiftedFirst) {
    shift(dr, 32, {0x78, 0x56, 0x34, 0x12});
    shift(ir, 6, {0x05});
    shift(dr, 9, {0xA5, 0x01});
    shift(dr, 1, {0x01});
    EXPECT_EQ(text, "a.jtag dr 32 12345678 0362d093\n"
                    "a.jtag ir 6 05 35\n"
                    "a.jtag dr 9 1a5 0a0\n"
                    "a.jtag dr 1 1 0\n");
}

TEST_F(TapLogTest, TellsAScanAsOneHoweverOftenItPauses) {
    shift(dr, 8, {0x78}, TapState::pauseDr);
    shift(dr, 3, {0x06}, TapState::pauseDr);
    shift(dr, 0, {}, TapState::pauseDr);
    EXPECT_EQ(text, "");
    shift(dr, 21, {0x8A, 0x46, 0x02});
    EXPECT_EQ(text, "a.jtag dr 32 12345678 0362d093\n");
}

TEST_F(TapLogTest, TellsScansThatArriveByPins) {
    for (const bool tms : {false, true, true, false, false})
        pulse(tms, false);
    for (int bit = 0; bit < 6; ++bit)
        pulse(bit == 5, bit == 0 || bit == 2);
    EXPECT_EQ(text, "");
    pulse(true, false);
    EXPECT_EQ(text, "a.jtag ir 6 05 35\n");
    // The same chain, by a move.
    move(TapState::testLogicReset);
    EXPECT_EQ(text, "a.jtag ir 6 05 35\na.jtag reset\n");
}

TEST_F(TapLogTest, TellsAResetByTmsOnce) {
    move(TapState::runTestIdle);
    for (int clock = 0; clock < 8; ++clock)
        pulse(true, true);
    EXPECT_EQ(text, "a.jtag reset\n");
}

TEST_F(TapLogTest, TellsAResetByTrstOnce) {
    shift(dr, 8, {0}, TapState::pauseDr);
    drive(TapPin::trst, false);
    EXPECT_EQ(text, "a.jtag reset\n") << "the scan never reached Update";
    for (int clock = 0; clock < 3; ++clock)
        pulse(false, true);
    shift(dr, 8, {0});
    drive(TapPin::trst, true);
    drive(TapPin::trst, false);
    EXPECT_EQ(text, "a.jtag reset\n") << "it was there already";
    drive(TapPin::trst, true);
    shift(ir, 6, {0x05});
    EXPECT_EQ(text, "a.jtag reset\na.jtag ir 6 05 35\n");
}

TEST_F(TapLogTest, HasNoLineForAScanWithoutBits) {
    move(TapState::pauseDr);
    move(TapState::runTestIdle);
    move(TapState::pauseIr);
    move(TapState::runTestIdle);
    EXPECT_EQ(text, "");
}

TEST_F(TapLogTest, HasNothingThatHappensWithoutPower) {
    shift(dr, 8, {0}, TapState::pauseDr);
    board->setPower(false);
    shift(dr, 8, {0});
    move(TapState::runTestIdle);
    drive(TapPin::trst, false);
    board->setPower(true);
    drive(TapPin::trst, true);
    shift(ir, 6, {0x3F});
    EXPECT_EQ(text, "a.jtag ir 6 3f 35\n");
}

TEST_F(TapLogTest, SaysOnlyTheLengthOfAScanThatIsTooLongToKeep) {
    follow(8);
    shift(dr, 8, {0x12});
    shift(dr, 9, {0, 0}, TapState::pauseDr);
    shift(dr, 100, TapBytes(13));
    shift(dr, 8, {0x34});
    EXPECT_EQ(text, "a.jtag dr 8 12 93\na.jtag dr 109 - -\na.jtag dr 8 34 93\n");
}

TEST_F(TapLogTest, TellsNothingOnceItIsTakenAway) {
    port.setObserver(nullptr);
    shift(dr, 8, {0x12});
    EXPECT_EQ(text, "");
}

TEST(TapLog, MakesItsNameOneWord) {
    std::string text;
    TapLog log("a b\n\xC3\xA4~.c", [&](std::string_view piece) { text += piece; });
    log.trst(TapState::runTestIdle, false);
    EXPECT_EQ(text, "a\\x20b\\x0a\\xc3\\xa4~.c reset\n");
}

TEST_F(TapLogTest, WritesLongNumbersWhole) {
    TapBytes data(100'000);
    std::string expected;
    for (std::size_t byte = 0; byte < data.size(); ++byte)
        data[byte] = static_cast<std::uint8_t>(byte * 7 + byte / 256);
    constexpr auto digits = "0123456789abcdef";
    for (auto byte = data.rbegin(); byte != data.rend(); ++byte) {
        expected += digits[*byte >> 4];
        expected += digits[*byte & 0x0F];
    }
    shift(dr, 800'000, data);
    const std::string head = "a.jtag dr 800000 ";
    ASSERT_EQ(text.size(), head.size() + 2 * 200'000 + 2);
    EXPECT_TRUE(text == head + expected + " " + text.substr(head.size() + 200'001));
    EXPECT_EQ(text.substr(text.size() - 9), "0362d093\n");
}

} // namespace
