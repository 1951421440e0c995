#include <algorithm>
#include <chrono>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tavo/jtag/svf/parser.h>

namespace {

using TAVO::jtag::BitString;
using TAVO::jtag::Register;
using TAVO::jtag::svf::Parser;
using TAVO::jtag::svf::Statement;
using TAVO::jtag::svf::SvfError;
namespace svf = TAVO::jtag::svf;
using enum TAVO::HWDebug::TapState;
using std::chrono::microseconds;
using testing::ElementsAre;
using testing::StartsWith;

std::vector<Statement> statementsOf(const std::string& text) {
    Parser parser(text, "f.svf");
    std::vector<Statement> statements;
    while (auto statement = parser.next())
        statements.push_back(std::move(*statement));
    return statements;
}

template <class Kind>
Kind only(const std::string& text) {
    const auto statements = statementsOf(text);
    EXPECT_EQ(statements.size(), 1u) << text;
    return std::get<Kind>(statements.at(0).what);
}

svf::ScanData lastScan(const std::string& text) {
    return std::get<svf::Scan>(statementsOf(text).back().what).data;
}

std::string errorOf(const std::string& text) {
    try {
        statementsOf(text);
    } catch (const SvfError& error) {
        return error.what();
    }
    return "none";
}

BitString bits(std::size_t size, std::vector<std::uint8_t> bytes) { return {size, std::move(bytes)}; }

TEST(SvfParser, DigitsAreANumberWhoseLowestBitComesFirst) {
    const auto scan = only<svf::Scan>("SDR 12 TDI (A5C) TDO (0123) MASK (fF0) SMASK (7FF);");
    EXPECT_EQ(scan.target, Register::data);
    EXPECT_EQ(scan.data.length, 12u);
    EXPECT_EQ(*scan.data.tdi, bits(12, {0x5C, 0x0A}));
    EXPECT_EQ(*scan.data.tdo, bits(12, {0x23, 0x01}));
    EXPECT_EQ(*scan.data.mask, bits(12, {0xF0, 0x0F}));
}

TEST(SvfParser, LeadingZerosMayBeLeftOutOrSuperfluous) {
    EXPECT_EQ(*only<svf::Scan>("SIR 17 TDI (3);").data.tdi, bits(17, {3, 0, 0}));
    EXPECT_EQ(*only<svf::Scan>("SIR 3 TDI (0000000000007);").data.tdi, bits(3, {7}));
    EXPECT_EQ(*only<svf::Scan>("SIR 3 TDI ();").data.tdi, bits(3, {0}));
    EXPECT_EQ(errorOf("SIR 3\n TDI (8);"), "f.svf:2: SIR: TDI has 4 bits, more than 3");
    EXPECT_EQ(errorOf("SIR 8 TDI (1FF);"), "f.svf:1: SIR: TDI has 9 bits, more than 8");
}

TEST(SvfParser, StatementsAndDataSpreadOverLinesWithCommentsOfBothKinds) {
    const auto statements = statementsOf("! SIR 8;\r\nENDIR IDLE; ENDDR\r\n\tDRPAUSE // ;\r\n;"
                                         "sdr 16 tdi ( A ! 1\n5 //)\n\n\tC 3);;\n//");
    EXPECT_THAT(statements, testing::SizeIs(3));
    EXPECT_EQ(statements.at(0).line, 2u);
    EXPECT_EQ(statements.at(1).line, 2u);
    EXPECT_EQ(statements.at(2).line, 4u);
}

TEST(SvfParser, LinesEndWithCrLfOrBoth) {
    EXPECT_EQ(errorOf("\r! x\r\n\n\r\nX;"), "f.svf:5: 'X' is no command");
}

TEST(SvfParser, MarksOfOtherSystemsAtTheEndsOfAFileAreNothing) {
    EXPECT_THAT(statementsOf("\xEF\xBB\xBFSTATE IDLE;\r\n\x1A"), testing::SizeIs(1));
    EXPECT_THAT(errorOf("STATE IDLE;\x1A;"), StartsWith("f.svf:1: '?' is no command"));
}

TEST(SvfParser, KeywordsAreReadInAnyCase) {
    EXPECT_EQ(only<svf::EndState>("EndIr IrPause;").state, pauseIr);
    EXPECT_EQ(only<svf::RunTest>("runtest idle 5 tck 1e-3 sec maximum 1 sec endstate reset;").end,
              testLogicReset);
}

TEST(SvfParser, DataAreCarriedOverWhileTheLengthStays) {
    auto scan = lastScan("SDR 8 TDI (12) TDO (34) MASK (56); SIR 4 TDI (1); SDR 8 TDO (78);");
    EXPECT_EQ(*scan.tdi, bits(8, {0x12}));
    EXPECT_EQ(*scan.tdo, bits(8, {0x78}));
    EXPECT_EQ(*scan.mask, bits(8, {0x56}));
    scan = lastScan("SDR 8 TDI (12) TDO (34) MASK (56); SDR 8;");
    EXPECT_EQ(scan.tdo, nullptr);
    scan = lastScan("SDR 8 TDI (12) MASK (56); SDR 9 TDI (1); SDR 9 TDO (1);");
    EXPECT_EQ(*scan.tdi, bits(9, {1, 0}));
    EXPECT_EQ(scan.mask, nullptr);
}

TEST(SvfParser, AScanOfAnotherLengthNeedsTdi) {
    EXPECT_EQ(errorOf("SDR 8 TDI (1);\nSDR 9 TDO (1);"),
              "f.svf:2: SDR has no TDI, and the last one had 8 bits, not 9");
    EXPECT_EQ(errorOf("SIR 8 TDI (1);\nSDR 8;"), "f.svf:2: SDR has no TDI, and there is none before");
    EXPECT_EQ(errorOf("SDR 8 TDI (1); SDR 9 TDI (1); SDR 8;"),
              "f.svf:1: SDR has no TDI, and the last one had 9 bits, not 8");
}

TEST(SvfParser, WhatStandsAroundScansMayBeNothing) {
    for (const std::string command : {"HIR", "HDR", "TIR", "TDR"}) {
        const auto none = only<svf::Surround>(command + " 0;");
        EXPECT_EQ(none.data.length, 0u);
        EXPECT_EQ(none.target == Register::instruction, command[1] == 'I');
        EXPECT_EQ(none.isHeader, command[0] == 'H');
        EXPECT_EQ(*only<svf::Surround>(command + " 2 TDI (3);").data.tdi, bits(2, {3}));
    }
    EXPECT_EQ(errorOf("SDR 0;"), "f.svf:1: SDR of no bits");
}

TEST(SvfParser, NumbersAreAnyThatOccur) {
    for (const auto* number : {"1E6", "1e+06", "1000000", "1000000.00", "1.0E6", "1.00E+006"})
        EXPECT_EQ(only<svf::Frequency>("FREQUENCY " + std::string(number) + " HZ;").hertz, 1'000'000)
            << number;
    EXPECT_EQ(only<svf::RunTest>("RUNTEST 1.0E-3 SEC;").time, microseconds(1000));
    EXPECT_EQ(only<svf::RunTest>("RUNTEST .5 SEC;").time, microseconds(500'000));
    EXPECT_EQ(only<svf::RunTest>("RUNTEST 1e-7 SEC;").time, microseconds(1));
    EXPECT_EQ(only<svf::RunTest>("RUNTEST 1E3 TCK;").clocks, 1000u);
    for (const auto* number : {"inf", "nan", "0x10", "-1", "+1", "1E", "1E999", "1,5"})
        EXPECT_EQ(errorOf("RUNTEST " + std::string(number) + " SEC;"),
                  "f.svf:1: RUNTEST: '" + std::string(number) + "' is no number");
    EXPECT_EQ(errorOf("SDR 1.5 TDI (0);"), "f.svf:1: SDR: '1.5' is no whole number up to 2147483647");
    EXPECT_EQ(errorOf("SDR 2147483648 TDI (0);"),
              "f.svf:1: SDR: '2147483648' is no whole number up to 2147483647");
}

TEST(SvfParser, FrequencyWithoutANumberIsFullSpeed) {
    EXPECT_EQ(only<svf::Frequency>("FREQUENCY;").hertz, std::nullopt);
    EXPECT_EQ(only<svf::Frequency>("FREQUENCY 1E12 HZ;").hertz, 0x7FFFFFFF);
    EXPECT_EQ(only<svf::Frequency>("FREQUENCY 1234.9 HZ;").hertz, 1234);
    EXPECT_EQ(errorOf("FREQUENCY 0 HZ;"), "f.svf:1: FREQUENCY: 0 Hz is less than 1 Hz");
    EXPECT_EQ(errorOf("FREQUENCY 5;"), "f.svf:1: FREQUENCY ends without HZ");
    EXPECT_EQ(errorOf("FREQUENCY 5 KHZ;"), "f.svf:1: FREQUENCY: 'KHZ' is not HZ");
}

TEST(SvfParser, RunTestHasAllItsForms) {
    auto run = only<svf::RunTest>("RUNTEST 100 TCK;");
    EXPECT_EQ(run.clocks, 100u);
    EXPECT_EQ(run.state, std::nullopt);
    EXPECT_EQ(run.end, std::nullopt);
    EXPECT_EQ(run.time, microseconds(0));
    run = only<svf::RunTest>("RUNTEST DRPAUSE 100 TCK 2 SEC MAXIMUM 2 SEC ENDSTATE IRPAUSE;");
    EXPECT_EQ(run.state, pauseDr);
    EXPECT_EQ(run.time, microseconds(2'000'000));
    EXPECT_EQ(run.end, pauseIr);
    run = only<svf::RunTest>("RUNTEST RESET 1E-6 SEC ENDSTATE IDLE;");
    EXPECT_EQ(run.state, testLogicReset);
    EXPECT_EQ(run.clocks, 0u);
    EXPECT_EQ(run.time, microseconds(1));
    EXPECT_EQ(only<svf::RunTest>("RUNTEST 7 TCK ENDSTATE RESET;").end, testLogicReset);
    EXPECT_EQ(only<svf::RunTest>("RUNTEST 1 SEC MAXIMUM 2 SEC;").time, microseconds(1'000'000));
}

TEST(SvfParser, RunTestThatIsNoneNamesItsFault) {
    const auto fault = [](const std::string& rest) { return errorOf("!\nRUNTEST " + rest); };
    EXPECT_EQ(fault("1 SCK;"), "f.svf:2: RUNTEST: there is no SCK, a jtag object has no clock but TCK");
    EXPECT_EQ(fault("2 SEC MAXIMUM 1 SEC;"),
              "f.svf:2: RUNTEST: the MAXIMUM of 1 seconds is below the minimum");
    EXPECT_EQ(fault("DRSHIFT 1 TCK;"),
              "f.svf:2: RUNTEST: 'DRSHIFT' is none of IRPAUSE, DRPAUSE, RESET and IDLE");
    EXPECT_EQ(fault("IDLE;"), "f.svf:2: RUNTEST ends without a number");
    EXPECT_EQ(fault("1;"), "f.svf:2: RUNTEST ends without TCK or SEC");
    EXPECT_EQ(fault("1 TCK 2;"), "f.svf:2: RUNTEST ends without SEC");
    EXPECT_EQ(fault("1 TCK 2 TCK;"), "f.svf:2: RUNTEST: 'TCK' is not SEC");
    EXPECT_EQ(fault("1 TCK MAXIMUM 2 SEC;"), "f.svf:2: 'MAXIMUM' does not belong here in RUNTEST");
    EXPECT_EQ(fault("1 TCK ENDSTATE IDLE 2 SEC;"), "f.svf:2: '2' does not belong here in RUNTEST");
    EXPECT_EQ(fault("1.5 TCK;"), "f.svf:2: RUNTEST: '1.5' is no whole number up to 4294967295");
    EXPECT_EQ(fault("86401 SEC;"), "f.svf:2: RUNTEST: 86401 seconds are more than a day");
    EXPECT_EQ(fault("1 MSEC;"), "f.svf:2: RUNTEST: 'MSEC' is not SEC");
}

TEST(SvfParser, StatesHaveTheirNames) {
    EXPECT_THAT(only<svf::StatePath>("STATE RESET IDLE DRSELECT DRCAPTURE DRSHIFT DREXIT1 DRPAUSE DREXIT2 "
                                     "DRUPDATE IRSELECT IRCAPTURE IRSHIFT IREXIT1 IREXIT2 IRUPDATE IRPAUSE;")
                    .states,
                ElementsAre(testLogicReset, runTestIdle, selectDrScan, captureDr, shiftDr, exit1Dr, pauseDr,
                            exit2Dr, updateDr, selectIrScan, captureIr, shiftIr, exit1Ir, exit2Ir, updateIr,
                            pauseIr));
    EXPECT_EQ(errorOf("STATE IDLE\nFOO;"), "f.svf:2: STATE: 'FOO' is no state");
    EXPECT_EQ(errorOf("STATE;"), "f.svf:1: STATE ends without a state");
    EXPECT_EQ(errorOf("STATE IDLE DRSELECT;"),
              "f.svf:1: STATE: 'DRSELECT' is none of IRPAUSE, DRPAUSE, RESET and IDLE");
    EXPECT_EQ(errorOf("ENDDR DRSHIFT;"),
              "f.svf:1: ENDDR: 'DRSHIFT' is none of IRPAUSE, DRPAUSE, RESET and IDLE");
}

TEST(SvfParser, NothingFollowsTrstAbsent) {
    using enum svf::TestReset::Mode;
    EXPECT_EQ(only<svf::TestReset>("TRST ON;").mode, on);
    EXPECT_EQ(only<svf::TestReset>("TRST OFF;").mode, off);
    EXPECT_EQ(only<svf::TestReset>("TRST Z;").mode, highImpedance);
    EXPECT_EQ(only<svf::TestReset>("TRST ABSENT;").mode, absent);
    EXPECT_EQ(errorOf("TRST ABSENT;\nTRST OFF;"), "f.svf:2: TRST follows TRST ABSENT");
    EXPECT_EQ(errorOf("TRST LOW;"), "f.svf:1: TRST: 'LOW' is none of ON, OFF, Z and ABSENT");
}

TEST(SvfParser, ParallelPinsAreRefused) {
    EXPECT_EQ(errorOf("\n\nPIOMAP (IN STROBE OUT DATA);"),
              "f.svf:3: PIOMAP needs parallel pins, which a jtag object does not have");
    EXPECT_EQ(errorOf("PIO (HLUDXZ);"),
              "f.svf:1: PIO needs parallel pins, which a jtag object does not have");
}

TEST(SvfParser, WhatIsNoStatementIsNamedWithItsLine) {
    EXPECT_EQ(errorOf("STATE IDLE;\nXSDR 8;"), "f.svf:2: 'XSDR' is no command");
    EXPECT_EQ(errorOf("STATE IDLE;\n\nSDR 8\nTDI (1)"), "f.svf:3: SDR has no ';' at its end");
    EXPECT_EQ(errorOf("\nSDR 8 TDI\n(1\n1;"), "f.svf:4: ';' is no hexadecimal digit");
    EXPECT_EQ(errorOf("\nSDR 8 TDI\n(1\n1"), "f.svf:3: the parenthesis is never closed");
    EXPECT_EQ(errorOf("SDR 8 TDI (1\nG);"), "f.svf:2: 'G' is no hexadecimal digit");
    EXPECT_EQ(errorOf("SDR 8 TDI 1;"), "f.svf:1: SDR: TDI has no data in parentheses");
    EXPECT_EQ(errorOf("SDR 8 TDI;"), "f.svf:1: SDR: TDI has no data in parentheses");
    EXPECT_EQ(errorOf("SDR 8 (1);"), "f.svf:1: SDR has data that is none of TDI, TDO, MASK and SMASK");
    EXPECT_EQ(errorOf("SDR 8 TDI (1) TDI (1);"), "f.svf:1: SDR has TDI twice");
    EXPECT_EQ(errorOf("SDR 8 TDI (1) X (1);"), "f.svf:1: SDR: 'X' is none of TDI, TDO, MASK and SMASK");
    EXPECT_EQ(errorOf("SDR (8);"), "f.svf:1: SDR has a '(' in place of a length");
    EXPECT_EQ(errorOf("SDR;"), "f.svf:1: SDR ends without a length");
    EXPECT_EQ(errorOf("ENDIR IDLE IDLE;"), "f.svf:1: 'IDLE' does not belong here in ENDIR");
    EXPECT_EQ(errorOf("(1);"), "f.svf:1: '(' is no command");
    EXPECT_EQ(errorOf("SDR 8 TDI 1);"), "f.svf:1: SDR: TDI has no data in parentheses");
    EXPECT_EQ(errorOf(");"), "f.svf:1: there is a ')' without '('");
    EXPECT_EQ(errorOf("\x1b[31m;"), "f.svf:1: '?[31m' is no command");
    EXPECT_EQ(errorOf(std::string(100, 'A')), "f.svf:1: '" + std::string(40, 'A') + "...' is no command");
}

TEST(SvfParser, WhatAFileLeavesOutIsBounded) {
    EXPECT_EQ(errorOf("SDR 2147483647 TDI (0);"),
              "f.svf:1: SDR: TDI of 2147483647 bits leaves out too many digits for a file of this size");
    // Each statement takes 32 MiB.
    const std::string huge = "SDR 268435456 TDI (0);\n";
    EXPECT_EQ(errorOf(huge + huge + huge),
              "f.svf:3: SDR: TDI of 268435456 bits leaves out too many digits for a file of this size");
}

TEST(SvfParser, DataOfMegabytesTakeNoTime) {
    constexpr std::size_t length = 5'748'760;
    const auto digits = (length + 3) / 4;
    auto text = "SDR " + std::to_string(length) + " TDI (\n";
    for (std::size_t done = 0; done < digits; done += 64)
        text += std::string(std::min<std::size_t>(64, digits - done), 'A') + "\r\n";
    const auto tdi = only<svf::Scan>(text + ");").data.tdi;
    EXPECT_EQ(*tdi, BitString(length, std::vector<std::uint8_t>(length / 8 + 1, 0xAA)));
}

TEST(SvfParser, TellsHowFarItHasRead) {
    const std::string text = "STATE IDLE; STATE RESET;";
    Parser parser(text, "f.svf");
    parser.next();
    EXPECT_EQ(parser.position(), 11u);
    parser.next();
    EXPECT_EQ(parser.position(), text.size());
}

} // namespace
