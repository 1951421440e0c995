#include <chrono>
#include <csignal>
#include <string>
#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tavo/simulator/objects/gpu.h>
#include <tavo/simulator/objects/hdt.h>
#include <tests/cli/tool_fixture.h>

namespace tool_test {
namespace {

using testing::HasSubstr;

class DebugTool : public SimulatedTool {
protected:
    explicit DebugTool(const std::string& topology = "standard")
        : SimulatedTool(topology) {
        simulator.inspect([](auto& appliance) {
            appliance.clock().freeze();
            appliance.board()->setPower(true);
        });
        pass(std::chrono::seconds(1));
    }
    void pass(std::chrono::microseconds time) {
        simulator.inspect([time](auto& appliance) { appliance.clock().advance(time); });
    }
    nlohmann::json documentOf(const Words& arguments) const {
        const auto run = tool(arguments + Words{"--json"});
        EXPECT_EQ(run.exitCode, 0) << run.errors;
        return jsonOf(run.output);
    }
};

class LegacyDebugTool : public DebugTool {
protected:
    LegacyDebugTool()
        : DebugTool("legacy") {}
};

TEST_F(DebugTool, HdtStatusShowsSignalsSnapshotsAndOptionsFromOneExchange) {
    const auto run = tool({"hdt", "status"});
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_EQ(run.output, "power good        yes\nin reset          no\nDBREQ             0\n"
                          "DBRDY             0 0 0 0\nDBRDY snapshot    0 0 0 0\nDBRDY mask        1 1 1 1\n"
                          "DBREQ source      0 none\nenable            on\nDBREQ on DBRDY    off\n"
                          "DBREQ on reset    off\nDBREQ on trigger  off\nDBREQ on trigger  off\n"
                          "DBREQ pulse       0 ns\nfrequency         100000000 Hz\n");
    EXPECT_EQ(callsOf("cpu0.hdt", "ioDbreqGet").at(0).request,
              callsOf("cpu0.hdt", "optionFrequencyGet").at(0).request);
}

TEST_F(DebugTool, HdtRequestHaltsTheCoresUntilItIsReleased) {
    EXPECT_EQ(tool({"hdt", "request", "on"}).exitCode, 0);
    pass(std::chrono::milliseconds(1));
    auto status = documentOf({"hdt", "status"});
    EXPECT_EQ(status["dbreq"], true);
    EXPECT_EQ(status["dbrdy"], nlohmann::json({true, true, true, true}));
    EXPECT_EQ(status["dbreqSource"], 1);
    EXPECT_EQ(documentOf({"hdt", "request", "off"}),
              nlohmann::json::parse(R"({"object": "cpu0.hdt", "returnCode": 0})"));
    status = documentOf({"hdt", "status"});
    EXPECT_EQ(status["dbrdy"], nlohmann::json({false, false, false, false}));
    EXPECT_EQ(status["dbrdySnapshot"], nlohmann::json({true, true, true, true}));
}

TEST_F(DebugTool, HdtSnapshotClearForgetsLinesAndSource) {
    tool({"hdt", "request", "on"});
    pass(std::chrono::milliseconds(1));
    tool({"hdt", "request", "off"});
    EXPECT_EQ(tool({"hdt", "snapshot", "clear"}).exitCode, 0);
    const auto status = documentOf({"hdt", "status"});
    EXPECT_EQ(status["dbrdySnapshot"], nlohmann::json({false, false, false, false}));
    EXPECT_EQ(status["dbreqSource"], 0);
}

TEST_F(DebugTool, HdtMaskChoosesTheLines) {
    EXPECT_EQ(tool({"hdt", "mask"}).output, "1 1 1 1\n");
    EXPECT_EQ(tool({"hdt", "mask", "0", "1", "0", "1"}).output, "0 1 0 1\n");
    EXPECT_EQ(documentOf({"hdt", "mask"})["dbrdyMask"], nlohmann::json({false, true, false, true}));
    tool({"hdt", "request", "on"});
    pass(std::chrono::milliseconds(1));
    EXPECT_THAT(tool({"hdt", "status"}).output, HasSubstr("DBRDY             0 1 0 1\n"));
    EXPECT_EQ(tool({"hdt", "mask", "1"}).exitCode, 1) << "the device has four lines";
    EXPECT_EQ(tool({"hdt", "mask", "1", "2", "1", "1"}).exitCode, 2);
}

TEST_F(DebugTool, HdtTriggersAreReadWithTheirSetupAndDriven) {
    tool({"call", "cpu0.hdt.optionTriggerSetupSet", "index=2", "value1=0", "value2=1", "value3=300",
          "value4=4", "value5=500", "value6=0", "value7=3"});
    EXPECT_EQ(tool({"hdt", "trigger", "set", "2", "on"}).exitCode, 0);
    EXPECT_EQ(tool({"hdt", "trigger", "get", "2"}).output,
              "level 1\nmode 0, edge 1, pulse width 300 ns, count 4, delay 500 ns, invert 0, source 3\n");
    const auto document = documentOf({"hdt", "trigger", "get", "2"});
    EXPECT_EQ(document["level"], true);
    EXPECT_EQ(document["setup"]["delay"], 500);
    EXPECT_EQ(tool({"hdt", "trigger", "get", "4"}).exitCode, 1);
    EXPECT_EQ(tool({"hdt", "trigger", "set", "0", "maybe"}).exitCode, 2);
    EXPECT_EQ(tool({"hdt", "trigger", "set", "0"}).exitCode, 2);
}

TEST_F(LegacyDebugTool, OldHdtShowsWhatItHas) {
    const auto run = tool({"hdt", "status", "--object", "hdt"});
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_THAT(run.output, HasSubstr("power good        yes\n"));
    EXPECT_THAT(run.output, HasSubstr("frequency         100000000 Hz\n"));
    EXPECT_THAT(run.output, testing::Not(HasSubstr("mask")));
    EXPECT_EQ(tool({"hdt", "snapshot", "clear", "--object", "hdt"}).exitCode, 0);
    const auto mask = tool({"hdt", "mask", "--object", "hdt"});
    EXPECT_EQ(mask.exitCode, 3);
    EXPECT_EQ(mask.errors, "tavo: 'hdt' is no hdt above version 1.0; the device has none\n");
    EXPECT_EQ(tool({"hdt", "status"}).errors,
              "tavo: which hdt? --object NAME chooses one of: cpu.hdt, hdt\n");
}

TEST_F(DebugTool, HdtThatIsSwitchedOffRefuses) {
    simulator.inspect([](auto& appliance) {
        appliance.template get<TAVO::simulator::Hdt>("cpu0.hdt").signals().setEnabled(false);
    });
    const auto run = tool({"hdt", "request", "on"});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.errors, "tavo: cpu0.hdt.ioDbreqSet returned code 3: the function is switched off\n");
}

TEST_F(DebugTool, GpuScanShowsBitsAsNumberOrBytes) {
    simulator.inspect([](auto& appliance) {
        appliance.template get<TAVO::simulator::GpuScan>("gpu0.gpuScan")
            .port()
            .setPattern(0x1122334455667788);
    });
    EXPECT_EQ(tool({"gpu", "scan"}).output, "0x1122334455667788\n");
    EXPECT_EQ(tool({"gpu", "scan", "12", "--bytes"}).output, "8807\n");
    EXPECT_EQ(documentOf({"gpu", "scan", "20"}),
              nlohmann::json::parse(
                  R"({"object": "gpu0.gpuScan", "bits": 20, "notation": "number", "data": "0x55667"})"));
    EXPECT_EQ(tool({"gpu", "scan", "0"}).output, "\n");
    EXPECT_EQ(tool({"gpu", "scan", "65537"}).exitCode, 1);
    EXPECT_EQ(tool({"gpu", "scan", "--", "-1"}).exitCode, 2);
}

TEST_F(DebugTool, GpuModeIsReadAndSetOnDebuggerAndMux) {
    EXPECT_EQ(tool({"gpu", "mode"}).output, "1\n");
    EXPECT_EQ(tool({"gpu", "mode", "3"}).output, "3\n");
    EXPECT_EQ(documentOf({"gpu", "mode", "2", "--object", "gpuMux"}),
              nlohmann::json::parse(R"({"object": "gpuMux", "mode": 2})"));
    EXPECT_EQ(tool({"gpu", "mode"}).output, "3\n");
    EXPECT_EQ(tool({"gpu", "mode", "4"}).exitCode, 1);
    EXPECT_EQ(tool({"gpu", "mode", "--object", "power"}).errors,
              "tavo: 'power' is no gpuDebug or kelvorGpuDebugMux; there are: gpu0, gpuMux\n");
}

TEST_F(DebugTool, HeaderStatusIsFollowedWithALineForEachChange) {
    support::Process process(
        setupOf({"header", "status", "--object", "cpu0.hdt", "--follow", "--interval", "0.01", "--json"}));
    EXPECT_EQ(process.firstLine(),
              R"({"changed": true, "connected": true, "error": false, "name": "HDT", "object": "cpu0.hdt"})");
    simulator.inspect([](auto& appliance) {
        appliance.template get<TAVO::simulator::Hdt>("cpu0.hdt").headerStatus().setError();
    });
    const auto seen = callsOf("cpu0.hdt", "headerStatusGet").size();
    const auto deadline = std::chrono::steady_clock::now() + support::processPatience;
    while (callsOf("cpu0.hdt", "headerStatusGet").size() < seen + 2 &&
           std::chrono::steady_clock::now() < deadline)
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    process.signal(SIGTERM);
    EXPECT_EQ(process.wait().output,
              R"({"changed": true, "connected": true, "error": false, "name": "HDT", "object": "cpu0.hdt"})"
              "\n"
              R"({"connections": [{"host": ["HDT"], "target": ["CPU0"]}], "object": "cpu0.hdt"})"
              "\n"
              R"({"changed": true, "connected": true, "error": true, "name": "HDT", "object": "cpu0.hdt"})"
              "\n");
    EXPECT_EQ(tool({"header", "status", "--object", "cpu0.hdt", "--follow", "--timeout", "0"}).output,
              "cpu0.hdt  HDT         connected, changed, error\ncpu0.hdt  connections: HDT -- CPU0\n");
}

TEST_F(DebugTool, HeaderStatusShowsAllHeadersFromOneExchange) {
    const auto run = tool({"header", "status"});
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_THAT(run.output, HasSubstr("cpu0\n  JTAG        connected, changed\n"
                                      "  HDT         connected, changed\n  JTAG, HDT -- CPU0\n"));
    EXPECT_THAT(run.output, HasSubstr("gpu0.gpuScan\n  SCAN        connected, changed\n  SCAN -- GPU\n"));
    EXPECT_EQ(callsOf("cpu0", "headerStatusGet").at(0).request,
              callsOf("i2c", "headerStatusGet").at(0).request);
    const auto documents = documentOf({"header", "status", "--object", "cpu0.hdt"});
    EXPECT_EQ(documents, nlohmann::json::parse(R"([{"object": "cpu0.hdt",
        "headers": [{"name": "HDT", "connected": true, "changed": true, "error": false}],
        "connections": [{"host": ["HDT"], "target": ["CPU0"]}]}])"));
}

TEST_F(DebugTool, HeaderClearForgetsChangesOfOneOrAll) {
    EXPECT_EQ(documentOf({"header", "clear", "--object", "cpu0.hdt"}),
              nlohmann::json::parse(R"({"cleared": ["cpu0.hdt"]})"));
    EXPECT_EQ(tool({"header", "status", "--object", "cpu0.hdt"}).output,
              "cpu0.hdt\n  HDT         connected\n  HDT -- CPU0\n");
    EXPECT_THAT(tool({"header", "status", "--object", "cpu0.jtag"}).output, HasSubstr("changed"));
    EXPECT_EQ(tool({"header", "clear"}).exitCode, 0);
    EXPECT_THAT(tool({"header", "status", "--object", "cpu0.jtag"}).output,
                testing::Not(HasSubstr("changed")));
}

TEST_F(DebugTool, HeaderErrorsAreShown) {
    simulator.inspect([](auto& appliance) {
        appliance.template get<TAVO::simulator::Hdt>("cpu0.hdt").headerStatus().setError();
    });
    EXPECT_EQ(tool({"header", "status", "--object", "cpu0.hdt"}).output,
              "cpu0.hdt\n  HDT         connected, changed, error\n  HDT -- CPU0\n");
}

TEST_F(DebugTool, HeaderStatusNeedsAnObjectThatHasIt) {
    const auto run = tool({"header", "status", "--object", "power"});
    EXPECT_EQ(run.exitCode, 3);
    EXPECT_EQ(
        run.errors,
        "tavo: power has no method 'headerStatusGet'; of objects that have it there are: cpu0, cpu0.hdt, "
        "cpu0.jtag, csJtag.jtag, gpu0, gpu0.gpuScan, gpu0.i2c, gpu0.jtag, i2c\n");
    const auto bare = runTool({"--sim", "--topology", "bare", "header", "clear"});
    EXPECT_EQ(bare.exitCode, 3);
    EXPECT_EQ(bare.errors, "tavo: no object of the device has a method 'headerStatusClear'\n");
}

} // namespace
} // namespace tool_test
