#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tavo/simulator/objects/jtag.h>
#include <tests/cli/tool_fixture.h>

namespace tool_test {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

const std::string idcodes = "SDR 96 TDI (0) TDO (0C0DE1D517B1E0C32A45D0C3);\n";

class SvfTool : public SimulatedTool {
protected:
    SvfTool() {
        simulator.inspect([](auto& appliance) { appliance.board()->setPower(true); });
    }
    ~SvfTool() override { std::filesystem::remove(path_); }

    /// The arguments that play a file of this text.
    Words svf(const std::string& text, const Words& options = {}) const {
        std::ofstream(path_) << text;
        return Words{"jtag", "svf", "--object", "cpu0.jtag", path_} + options;
    }
    template <class Look>
    auto look(Look look) {
        return simulator.inspect([&](auto& appliance) {
            return look(appliance.template get<TAVO::simulator::Jtag>("cpu0.jtag").port());
        });
    }

    const std::string path_ = testing::TempDir() + "tavo_svf_" + std::to_string(simulator.port()) + ".svf";
};

TEST_F(SvfTool, PlaysAFile) {
    const auto run = tool(svf("STATE RESET;\n" + idcodes));
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_EQ(run.output, path_ + ": 1 scans, 1 of them checked\n");
    EXPECT_THAT(run.errors, IsEmpty());
}

TEST_F(SvfTool, StatisticsCountExchangesAndBits) {
    const auto run = tool(svf("FREQUENCY 1E9 HZ;\n" + idcodes + "RUNTEST 10 TCK 1E-3 SEC;", {"--stats"}));
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_THAT(run.output, HasSubstr("statements  3\nscans       1, checked 1\nbits        96\n"
                                      "waits       0.001010 s\nexchanges   5\ntime        0."));
    EXPECT_THAT(run.output, EndsWith("TCK         1000000 Hz\n"
                                     "line 1: FREQUENCY asks for 1000000000 Hz, TCK has 1000000 Hz\n"));
}

TEST_F(SvfTool, JsonHasTheStatistics) {
    const auto run = tool(svf("FREQUENCY 3E7 HZ;\n" + idcodes, {"--json"}));
    auto document = jsonOf(run.output);
    EXPECT_GT(document["seconds"], 0);
    document.erase("seconds");
    EXPECT_EQ(
        document,
        nlohmann::json({{"bits", 96},
                        {"checkedScans", 1},
                        {"dryRun", false},
                        {"exchanges", 4},
                        {"file", path_},
                        {"frequency", 25'000'000},
                        {"object", "cpu0.jtag"},
                        {"otherFrequencies",
                         nlohmann::json::array({{{"asked", 30'000'000}, {"line", 1}, {"set", 25'000'000}}})},
                        {"scans", 1},
                        {"statements", 2},
                        {"waitSeconds", 0.0}}));
}

TEST_F(SvfTool, AMismatchFails) {
    const auto run = tool(svf("\nSDR 96 TDI (0) TDO (0C0DE1D517B1E0C32A45D0C2);"));
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_THAT(run.output, IsEmpty());
    EXPECT_EQ(run.errors,
              "tavo: " + path_ +
                  ":2: TDO is (0C0DE1D517B1E0C32A45D0C3), expected (0C0DE1D517B1E0C32A45D0C2) under "
                  "MASK (FFFFFFFFFFFFFFFFFFFFFFFF), first wrong bit 0\n");
    EXPECT_EQ(tool(svf("SDR 96 TDI (0) TDO (1);", {"--no-check"})).exitCode, 0);
}

TEST_F(SvfTool, NothingIsSentOfAFileThatIsNone) {
    const auto before = simulator.requestCount();
    const auto run = tool(svf("STATE RESET;\n" + idcodes + "PIO (H);\n"));
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_EQ(run.errors,
              "tavo: " + path_ + ":3: PIO needs parallel pins, which a jtag object does not have\n");
    EXPECT_EQ(simulator.requestCount(), before);
    const auto path = tool(svf("STATE IDLE;\nSTATE DRPAUSE IDLE;\n"));
    EXPECT_EQ(path.exitCode, 2);
    EXPECT_THAT(path.errors, HasSubstr(":2: STATE: no clock leads from IDLE to DRPAUSE"));
    EXPECT_EQ(simulator.requestCount(), before);
}

TEST_F(SvfTool, AFileThatCannotBeReadIsNamed) {
    const auto run = tool({"jtag", "svf", "--object", "cpu0.jtag", "/nowhere/x.svf"});
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_THAT(run.errors, HasSubstr("'/nowhere/x.svf'"));
}

TEST_F(SvfTool, ADryRunNeedsNoDevice) {
    auto run = runTool(svf(idcodes + idcodes + "RUNTEST 50 TCK 1 SEC;", {"--dry-run"}));
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_EQ(run.output,
              "statements  3\nscans       2, checked 2\nbits        192\nwaits       1.000050 s\n");
    run = runTool(svf(idcodes, {"--dry-run", "--json"}));
    EXPECT_EQ(jsonOf(run.output)["dryRun"], true);
    EXPECT_EQ(runTool(svf("X;", {"--dry-run"})).exitCode, 2);
}

TEST_F(SvfTool, ReadsStandardInput) {
    const auto run = tool({"jtag", "svf", "--object", "cpu0.jtag", "-"}, idcodes);
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_THAT(run.output, StartsWith("-: 1 scans"));
}

TEST_F(SvfTool, WaitsDoNotCountForTheTimeLimit) {
    const auto run = tool(Words{"--timeout", "300ms"} + svf("RUNTEST 400000 TCK 1 SEC;" + idcodes));
    EXPECT_EQ(run.exitCode, 0) << run.errors;
}

TEST_F(SvfTool, WhatTheDeviceRefusesIsNamedWithItsLines) {
    auto run = tool(svf("\nFREQUENCY 100 HZ;\n"));
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_THAT(run.errors, StartsWith("tavo: " + path_ + ":2: cpu0.jtag.optionTckFrequencySet"));
    run = tool(svf(idcodes + idcodes, {"--retry", "1001"}));
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_THAT(run.errors, StartsWith("tavo: " + path_ + ":1-2: cpu0.jtag.optionRetrySet"));
}

TEST_F(SvfTool, OptionsThatSayTheOppositeExcludeEachOther) {
    EXPECT_EQ(tool(svf(idcodes, {"--retry", "1", "--no-check"})).exitCode, 2);
    EXPECT_EQ(tool(svf(idcodes, {"--stop-at", "never"})).exitCode, 2);
    EXPECT_EQ(tool(svf(idcodes, {"--retry", "0"})).exitCode, 2);
}

TEST_F(SvfTool, ASignalGivesOptionsAndFrequencyBack) {
    support::Process process(setupOf(svf("FREQUENCY 5E6 HZ; TRST ON; TRST OFF; ENDDR DRPAUSE; SDR 8 TDI (0);"
                                         "RUNTEST 60 SEC;")));
    const auto deadline = std::chrono::steady_clock::now() + support::processPatience;
    while (callsOf("cpu0.jtag", "sleep").empty() && std::chrono::steady_clock::now() < deadline)
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    process.signal(SIGINT);
    const auto run = process.wait();
    EXPECT_EQ(run.signal, SIGINT);
    look([](auto& port) {
        using TAVO::simulator::JtagPort;
        EXPECT_EQ(port.frequency(), 1'000'000u);
        EXPECT_EQ(port.options(JtagPort::Register::data), JtagPort::ShiftOptions());
        EXPECT_EQ(port.pin(JtagPort::Pin::trst), JtagPort::Drive());
    });
}

TEST_F(SvfTool, AFailureGivesOptionsAndFrequencyBack) {
    EXPECT_EQ(tool(svf("FREQUENCY 5E6 HZ; ENDDR DRPAUSE; SDR 8 TDI (0) TDO (0);")).exitCode, 1);
    look([](auto& port) {
        using TAVO::simulator::JtagPort;
        EXPECT_EQ(port.frequency(), 1'000'000u);
        EXPECT_EQ(port.options(JtagPort::Register::data), JtagPort::ShiftOptions());
        EXPECT_EQ(port.state(), 6);
    });
}

} // namespace
} // namespace tool_test
