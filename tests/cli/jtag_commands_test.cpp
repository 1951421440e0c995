#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tavo/simulator/appliance.h>
#include <tavo/simulator/objects/jtag.h>
#include <tests/cli/tool_fixture.h>

namespace tool_test {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;

const Words onCpu{"--object", "cpu0.jtag"};

class JtagTool : public SimulatedTool {
protected:
    explicit JtagTool(const std::string& topology = "standard")
        : SimulatedTool(topology) {
        setPower(true);
    }
    void setPower(bool on) {
        simulator.inspect([on](auto& appliance) { appliance.board()->setPower(on); });
    }
    support::ProcessOutcome jtag(const Words& arguments) const {
        return tool(Words{"jtag"} + arguments + onCpu);
    }
    nlohmann::json documentOf(const Words& arguments) const {
        const auto run = jtag(arguments + Words{"--json"});
        EXPECT_EQ(run.exitCode, 0) << run.errors;
        return jsonOf(run.output);
    }
};

class LegacyJtagTool : public JtagTool {
protected:
    LegacyJtagTool()
        : JtagTool("legacy") {}
};

const std::string standardChain = "TAP   IR  IDCODE      version  part    manufacturer\n"
                                  "  0    8  0x2a45d0c3        2  0xa45d  bank 1 id 0x61\n"
                                  "  1    5  0x17b1e0c3        1  0x7b1e  bank 1 id 0x61\n"
                                  "  2   10  0x0c0de1d5        0  0xc0de  bank 2 id 0x6a\n"
                                  "IR total 23 bits, captured 0x002101; TAP 0 is next to TDO\n";

TEST_F(JtagTool, ScanFindsTheChainInOneExchange) {
    const auto run = jtag({"scan"});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.output, standardChain);
    EXPECT_THAT(run.errors, IsEmpty());
    const auto dr = callsOf("cpu0.jtag", "shiftDR"), ir = callsOf("cpu0.jtag", "shiftIR"),
               moves = callsOf("cpu0.jtag", "tapStateSet");
    ASSERT_EQ(dr.size(), 2u);
    ASSERT_EQ(ir.size(), 1u);
    ASSERT_EQ(moves.size(), 2u);
    for (const auto& call : {dr[0], dr[1], ir[0], moves[1]})
        EXPECT_EQ(call.request, moves[0].request);
}

TEST_F(JtagTool, ScanLeavesTheChainInReset) {
    jtag({"scan"});
    EXPECT_EQ(jtag({"state"}).output, "0 Test-Logic-Reset\n");
}

TEST_F(JtagTool, ScanAsJsonIsOneDocument) {
    const auto document = documentOf({"scan"});
    EXPECT_EQ(document["object"], "cpu0.jtag");
    EXPECT_EQ(document["irLength"], 23);
    EXPECT_EQ(document["ambiguous"], false);
    EXPECT_EQ(document["taps"][2], nlohmann::json::parse(R"({"position": 2, "irLength": 10,
        "idcode": "0x0c0de1d5", "version": 0, "part": 49374, "manufacturer": {"bank": 2, "id": 106}})"));
}

TEST_F(JtagTool, ScanOfAChainWithoutPowerFails) {
    setPower(false);
    const auto run = jtag({"scan"});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.errors, "tavo: the chain does not answer: TDO is always 1\n");
    EXPECT_THAT(run.output, IsEmpty());
}

TEST_F(JtagTool, ScanThatTheDeviceRefusesFails) {
    simulator.inspect([](auto& appliance) {
        appliance.template get<TAVO::simulator::Jtag>("cpu0.jtag").port().setEnabled(false);
    });
    const auto run = jtag({"scan"});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.errors, "tavo: cpu0.jtag.tapStateSet returned code 3: the function is switched off\n");
}

TEST_F(LegacyJtagTool, ScanWorksOnOldObjects) {
    const auto run = tool({"jtag", "scan", "--object", "cpu.jtag"});
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_EQ(run.output, standardChain);
}

TEST_F(JtagTool, TheObjectMustBeNamedWhereSeveralFit) {
    const auto run = tool({"jtag", "scan"});
    EXPECT_EQ(run.exitCode, 3);
    EXPECT_EQ(run.errors,
              "tavo: which jtag? --object NAME chooses one of: cpu0.jtag, csJtag.jtag, gpu0.jtag\n");
    EXPECT_EQ(tool({"jtag", "scan", "--object", "cpu0"}).errors,
              "tavo: 'cpu0' is no jtag; there are: cpu0.jtag, csJtag.jtag, gpu0.jtag\n");
    EXPECT_EQ(tool({"jtag", "scan", "--object", "nowhere"}).exitCode, 3);
}

class BareTool : public SimulatedTool {
protected:
    BareTool()
        : SimulatedTool("bare") {}
};

TEST_F(BareTool, TheOnlyObjectNeedsNoName) {
    EXPECT_EQ(tool({"jtag", "state"}).errors, "tavo: the device has no jtag\n");
    simulator.inspect([](auto& appliance) {
        appliance.template add<TAVO::simulator::Jtag>("chain", "1.1", appliance.board());
    });
    EXPECT_EQ(tool({"jtag", "state"}).output, "0 Test-Logic-Reset\n");
}

TEST_F(JtagTool, ShiftsLeaveInOneExchangeAndShowWhatCameBack) {
    // CPU: IDCODE (2), the others: BYPASS, whose two bits come behind the 32 of the CPU.
    const auto run = jtag({"shift", "ir", "23", "7fff02", "dr", "34", "0"});
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_EQ(run.output, "numbers, the lowest bit is shifted first\n"
                          "ir 23  in 0x7fff02  out 0x002101\n"
                          "dr 34  in 0x000000000  out 0x02a45d0c3\n");
    EXPECT_EQ(callsOf("cpu0.jtag", "shiftIR").at(0).request, callsOf("cpu0.jtag", "shiftDR").at(0).request);
}

TEST_F(JtagTool, ShiftsThroughOneTapPutTheOthersInBypass) {
    const auto tapShift = [this](const char* tap, const char* bits, const char* instruction,
                                 const Words& more) {
        return jtag(Words{"shift", "--tap", tap, "ir", bits, instruction, "dr", "32", "0"} + more);
    };
    const auto first = tapShift("0", "8", "02", {"--chain", "8,5,10"});
    EXPECT_EQ(first.exitCode, 0) << first.errors;
    EXPECT_EQ(first.output, "numbers, the lowest bit is shifted first\n"
                            "ir 8  in 0x02  out 0x01\n"
                            "dr 32  in 0x00000000  out 0x2a45d0c3\n");
    EXPECT_EQ(callsOf("cpu0.jtag", "shiftIR").at(0).parameters.find("data")->toString(), "02ff7f");
    EXPECT_EQ(callsOf("cpu0.jtag", "shiftDR").at(0).parameters.find("bits")->toString(), "34");
    EXPECT_THAT(tapShift("1", "5", "6", {"--chain", "8,5,10"}).output, HasSubstr("out 0x17b1e0c3\n"));
    EXPECT_THAT(tapShift("2", "10", "159", {}).output, HasSubstr("out 0x0c0de1d5\n")) << "found by a scan";
    const auto document = jsonOf(tapShift("1", "5", "6", {"--json"}).output);
    EXPECT_EQ(document["tap"], 1);
    EXPECT_EQ(document["shifts"][1], nlohmann::json::parse(R"({"register": "dr", "bits": 32,
        "in": "0x00000000", "out": "0x17b1e0c3", "returnCode": 0})"));
}

TEST_F(JtagTool, ShiftsThroughOneTapAreCheckedAgainstTheChain) {
    const Words data{"dr", "32", "0"};
    EXPECT_THAT(jtag(Words{"shift", "--tap", "0"} + data).errors, HasSubstr("the first shift must be ir"));
    EXPECT_EQ(jtag(Words{"shift", "--chain", "8,5,10"} + data).exitCode, 2) << "only with --tap";
    EXPECT_EQ(simulator.connectionCount(), 0u);
    const auto beyond = jtag(Words{"shift", "--tap", "3", "--chain", "8,5,10"} + data);
    EXPECT_EQ(beyond.exitCode, 2);
    EXPECT_EQ(beyond.errors, "tavo: there is no TAP 3: the chain has 3, counted from 0\n");
    EXPECT_EQ(jtag({"shift", "--tap", "1", "ir", "8", "2"}).errors,
              "tavo: the instruction register of TAP 1 has 5 bits, not 8\n");
    EXPECT_EQ(jtag(Words{"shift", "--tap", "1", "--chain", "8,x"} + data).exitCode, 2);
}

TEST_F(JtagTool, ShiftsInBytesGoInTheirOrder) {
    const auto run =
        jtag({"shift", "--bytes", "ir", "23", "02ff7f", "dr", "34", "0000000000", "dr", "0", ""});
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_EQ(run.output, "bytes in the order of shifting\n"
                          "ir 23  in 02ff7f  out 012100\n"
                          "dr 34  in 0000000000  out c3d0452a00\n"
                          "dr 0  in -  out -\n");
    const auto document = documentOf({"shift", "--bytes", "ir", "8", "02"});
    EXPECT_EQ(document["notation"], "bytes");
    EXPECT_EQ(document["shifts"], nlohmann::json::parse(R"([{"register": "ir", "bits": 8, "in": "02",
        "out": "01", "returnCode": 0}])"));
}

TEST_F(JtagTool, ShiftsThatTheDeviceRefusesAreShownAndFail) {
    // Repeated so often, 6000 bits are more clocks than a call may take.
    simulator.inspect([](auto& appliance) {
        auto& port = appliance.template get<TAVO::simulator::Jtag>("cpu0.jtag").port();
        auto options = port.options(TAVO::simulator::JtagPort::Register::data);
        options.repeat = {1000, true};
        port.setOptions(TAVO::simulator::JtagPort::Register::data, options);
    });
    const auto run = jtag({"shift", "ir", "4", "f", "dr", "6000", "0"});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_THAT(run.output, HasSubstr("ir 4  in 0xf  out 0x1\n"));
    EXPECT_THAT(run.output, EndsWith("00  return code 1\n")) << "what is refused captures nothing";
    EXPECT_EQ(run.errors,
              "tavo: cpu0.jtag.shiftDR returned code 1: an argument is out of range or malformed\n");
}

TEST_F(JtagTool, ShiftsAreCheckedBeforeAnythingIsSent) {
    for (const auto& words : {Words{"ir"}, Words{"ir", "8"}, Words{"xr", "8", "0"}, Words{"ir", "x", "0"},
                              Words{"ir", "8", "100"}, Words{"ir", "99999999999", "0"},
                              Words{"ir", "8", "0", "dr"}, Words{"--bytes", "ir", "16", "00"}}) {
        const auto run = jtag(Words{"shift"} + words);
        EXPECT_EQ(run.exitCode, 2) << testing::PrintToString(words);
    }
    EXPECT_EQ(simulator.connectionCount(), 0u);
    EXPECT_EQ(jtag({"shift", "ir", "8", "100"}).errors,
              "tavo: 0x100 has more than 8 bits; each shift is ir|dr BITS HEX\n");
}

TEST_F(JtagTool, ShiftsAreBounded) {
    EXPECT_EQ(jtag({"shift", "ir", "16777217", "0"}).errors,
              "tavo: BITS: Value 16777217 not in range 0 to 16777216; each shift is ir|dr BITS HEX\n");
    EXPECT_EQ(jtag({"shift", "ir", "16777216", "0", "dr", "1", "0"}).errors,
              "tavo: the shifts have more than 16777216 bits together; each shift is ir|dr BITS HEX\n");
    EXPECT_EQ(simulator.connectionCount(), 0u);
}

TEST_F(JtagTool, StatesGoByNameAndNumber) {
    EXPECT_EQ(jtag({"state", "pause-dr"}).output, "6 Pause-DR\n");
    EXPECT_EQ(documentOf({"state"}),
              nlohmann::json::parse(R"({"object": "cpu0.jtag", "state": 6, "name": "Pause-DR"})"));
    EXPECT_EQ(jtag({"state", "1"}).output, "1 Run-Test/Idle\n");
    const auto refused = jtag({"state", "Shift-DR"});
    EXPECT_EQ(refused.exitCode, 1) << "the simulated device only moves to states in which it can stay";
    EXPECT_EQ(refused.errors,
              "tavo: cpu0.jtag.tapStateSet returned code 1: an argument is out of range or malformed\n");
    EXPECT_EQ(jtag({"state", "nowhere"}).exitCode, 2);
}

TEST_F(JtagTool, PinsAreShownWithTheirDrive) {
    tool({"call", "cpu0.jtag.ioTmsSet", "first=1", "second=0"});
    EXPECT_EQ(jtag({"pins"}).output, "TRST  1  not driven\nTCK   1  not driven\nTMS   0  driven\n"
                                     "TDI   1  not driven\nTDO   1\n");
    const auto document = documentOf({"pins"});
    EXPECT_EQ(document["TMS"], nlohmann::json::parse(R"({"driven": true, "level": false})"));
    EXPECT_EQ(document["TDO"], nlohmann::json::parse(R"({"level": true})"));
}

TEST_F(JtagTool, FrequencyIsTheOneThatTheDeviceReached) {
    EXPECT_EQ(jtag({"frequency"}).output, "1000000 Hz, divider 50\n");
    EXPECT_EQ(documentOf({"frequency", "3000000"}),
              nlohmann::json::parse(R"({"object": "cpu0.jtag", "frequency": 2941176, "divider": 17})"));
    EXPECT_EQ(jtag({"frequency", "5"}).exitCode, 1);
}

TEST_F(JtagTool, OptionsOfBothRegistersComeInOneExchange) {
    tool({"call", "cpu0.jtag.optionPrePostTckSet", "value1=1", "value2=2", "value3=3", "value4=4"});
    tool({"call", "cpu0.jtag.optionTdoExpectedSet", "irBits=0", "irExpected=", "irMask=", "drBits=9",
          "drExpected=3401", "drMask=ff01"});
    const auto run = jtag({"options"});
    EXPECT_THAT(run.output, HasSubstr("frequency       1000000 Hz, divider 50\n"));
    EXPECT_THAT(run.output, HasSubstr("IR pre TCK      1\nIR post TCK     2\nIR expected     nothing\n"));
    EXPECT_THAT(run.output, HasSubstr("DR expected     0x134 in 9 bits, mask 0x1ff\n"));
    EXPECT_EQ(callsOf("cpu0.jtag", "optionRetryGet").at(0).request,
              callsOf("cpu0.jtag", "enableGet").at(0).request);
    const auto document = documentOf({"options"});
    EXPECT_EQ(document["dr"]["postTck"], 4);
    EXPECT_EQ(document["ir"]["terminationState"], 1);
}

TEST_F(LegacyJtagTool, FrequencyAndOptionsWorkOnOldObjects) {
    const Words object{"--object", "jtag"};
    EXPECT_EQ(tool(Words{"jtag", "frequency", "25000000"} + object).output, "25000000 Hz, divider 2\n");
    tool({"call", "jtag.repeatSet", "count=7", "enable=1"});
    const auto run = tool(Words{"jtag", "options"} + object);
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_THAT(run.output, HasSubstr("IR repeat       7 times, on\n"));
    EXPECT_THAT(run.output, HasSubstr("DR repeat       7 times, on\n"));
    EXPECT_THAT(run.output, testing::Not(HasSubstr("pre TCK")));
}

} // namespace
} // namespace tool_test
