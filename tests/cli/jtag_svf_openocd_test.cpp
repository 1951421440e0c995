#include <csignal>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <unistd.h>

#include <tests/cli/tool_fixture.h>

// The same file through OpenOCD's player leaves the same at the pins. Without openocd, which
// scripts/packages.txt lists, these tests are skipped.

namespace tool_test {
namespace {

constexpr const char* openOcd = "/usr/bin/openocd";

/// tavo-sim with a log of what arrives at the pins of cpu0.jtag, and the tool for it.
class LoggedChain {
public:
    explicit LoggedChain(std::string log)
        : log_(std::move(log))
        , process_(
              {.program = TAVO_SIM_PROGRAM, .arguments = {"--port", "0", "--quiet", "--tap-log", log_}}) {
        const auto line = process_.firstLine();
        port_ = line.substr(line.rfind(':') + 1);
        EXPECT_EQ(support::runProcess(tool({"relay", "set", "power", "on"})).exitCode, 0);
    }

    support::ProcessSetup tool(const Words& arguments) const {
        auto setup =
            toolWith(Words{"--host", "127.0.0.1", "--port", port_, "--user", "engineer"} + arguments);
        setup.environment["TAVO_PASSWORD"] = "tavo";
        return setup;
    }

    /// Ends the simulator. What cpu0.jtag saw since its last reset.
    Words end() {
        process_.signal(SIGTERM);
        EXPECT_EQ(process_.wait().exitCode, 0);
        Words lines;
        std::ifstream in(log_);
        for (std::string line; std::getline(in, line);)
            if (line == "cpu0.jtag reset")
                lines.clear();
            else if (line.starts_with("cpu0.jtag "))
                lines.push_back(line);
        std::filesystem::remove(log_);
        return lines;
    }

private:
    std::string log_;
    support::Process process_;
    std::string port_;
};

class SvfBesideOpenOcd : public testing::Test {
protected:
    void SetUp() override {
        if (!std::filesystem::exists(openOcd))
            GTEST_SKIP() << "there is no openocd";
    }
    ~SvfBesideOpenOcd() override { std::filesystem::remove(path_); }

    int playByOpenOcd(const LoggedChain& chain) const {
        support::Process bridge(
            chain.tool({"jtag", "serve", "--once", "--bitbang", "0", "--object", "cpu0.jtag"}));
        const auto line = bridge.firstLine();
        support::ProcessSetup setup{.program = openOcd, .arguments = {}};
        for (const auto& command :
             Words{"gdb_port disabled", "telnet_port disabled", "tcl_port disabled",
                   "adapter driver remote_bitbang", "remote_bitbang host 127.0.0.1",
                   "remote_bitbang port " + line.substr(line.rfind(':') + 1), "reset_config none",
                   "jtag newtap board cpu -irlen 8", "jtag newtap board chipset -irlen 5",
                   "jtag newtap board cpld -irlen 10", "init", "svf -quiet " + path_, "shutdown"})
            setup.arguments.insert(setup.arguments.end(), {"-c", command});
        const auto run = support::runProcess(setup);
        // It ends when all that OpenOCD left behind is clocked.
        EXPECT_EQ(bridge.wait().exitCode, 0);
        return run.exitCode;
    }
    int playByTool(const LoggedChain& chain, const Words& options = {}) const {
        return support::runProcess(chain.tool(Words{"jtag", "svf", "--object", "cpu0.jtag", path_} + options))
            .exitCode;
    }
    void write(const std::string& text) const { std::ofstream(path_) << text; }

    const std::string path_ = testing::TempDir() + "tavo_svf_" + std::to_string(::getpid()) + "_" +
                              testing::UnitTest::GetInstance()->current_test_info()->name() + ".svf";
};

/// OpenOCD plays one statement of a line.
const std::string rightFile = R"(! Every kind of statement that reaches the pins.
STATE IDLE;
SDR 96 TDI (0) TDO (0C0DE1D517B1E0C32A45D0C3);
TIR 15 TDI (7FFF);
TDR 2 TDI (0);
SIR 8 TDI (20) TDO (01) MASK (03);
SDR 32 TDI (12345678);
SDR 32 TDI (89ABCDEF) TDO (12345678);
RUNTEST 10 TCK 1E-3 SEC ENDSTATE DRPAUSE;
STATE IDLE;
TDR 0;
ENDDR DRPAUSE;
SDR 16 TDI (5678) TDO (CDEF);
SDR 4 TDI (A);
STATE DREXIT2 DRSHIFT DRSHIFT DREXIT1 DRPAUSE;
ENDDR IDLE;
TDR 2 TDI (0);
SDR 12 TDI (FFF);
HDR 3 TDI (5);
TDR 0;
ENDDR IRPAUSE;
ENDIR IRPAUSE;
SDR 40 TDI (123456789A);
SIR 8 TDI (FF);
SIR 8 TDI (FE);
ENDIR DRPAUSE;
SIR 8 TDI (20);
HDR 0;
SDR 34 TDI (3FFFFFFFF);
STATE DRPAUSE;
STATE IDLE;
)";

TEST_F(SvfBesideOpenOcd, OneFileLeavesTheSameAtThePins) {
    write(rightFile);
    LoggedChain first(path_ + ".1");
    EXPECT_EQ(playByTool(first, {"--stop-at", "end"}), 0);
    const auto ours = first.end();
    LoggedChain second(path_ + ".2");
    EXPECT_EQ(playByOpenOcd(second), 0);
    EXPECT_EQ(ours, second.end());
    EXPECT_EQ(ours.size(), 8u);
}

TEST_F(SvfBesideOpenOcd, BothFindAFault) {
    write("SDR 96 TDI (0) TDO (0C0DE1D517B1E0C32A45D0C2);\n");
    LoggedChain chain(path_ + ".1");
    EXPECT_EQ(playByTool(chain), 1);
    EXPECT_EQ(playByOpenOcd(chain), 1);
    chain.end();
}

} // namespace
} // namespace tool_test
