#include <csignal>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tests/cli/jtag_serve/serve_fixture.h>
#include <tests/support/soon.h>

namespace tool_test {
namespace {

using testing::HasSubstr;

struct ServedPort {
    std::string topology;
    std::string object;
};

/// OpenOCD in front of the standard chain.
class OpenOcd : public ServeTest, public testing::WithParamInterface<ServedPort> {
protected:
    OpenOcd()
        : ServeTest(GetParam().topology, GetParam().object) {}

    support::ProcessSetup setup(const CableProcess& cable, const std::string& commands) const {
        const auto config = fileWith("openocd.cfg", "adapter driver remote_bitbang\n"
                                                    "remote_bitbang host 127.0.0.1\n"
                                                    "remote_bitbang port " +
                                                        std::to_string(cable.port()) +
                                                        "\n"
                                                        "gdb_port disabled\n"
                                                        "tcl_port disabled\n"
                                                        "telnet_port disabled\n"
                                                        "jtag newtap board cpu -irlen 8\n"
                                                        "jtag newtap board chipset -irlen 5\n"
                                                        "jtag newtap board cpld -irlen 10\n");
        return {.program = "/usr/bin/openocd",
                .arguments = {"-f", config, "-c", "init; " + commands + "; shutdown"}};
    }
    support::ProcessOutcome run(const CableProcess& cable, const std::string& commands) const {
        return support::runProcess(setup(cable, commands));
    }
};

TEST_P(OpenOcd, FindsTheChainAndReadsBackWhatItWrote) {
    const auto cable = serve("--bitbang");
    const auto outcome =
        run(*cable, "echo [scan_chain]; irscan board.chipset 0x0a; drscan board.chipset 32 0xcafe1234; "
                    "echo \"back [drscan board.chipset 32 0x5], then [drscan board.chipset 32 0]\"");
    EXPECT_EQ(outcome.exitCode, 0) << outcome.errors;
    for (const auto* id : {"0x2a45d0c3", "0x17b1e0c3", "0x0c0de1d5", "back cafe1234, then 00000005"})
        EXPECT_THAT(outcome.errors, HasSubstr(id));
    const auto end = cable->end();
    EXPECT_EQ(end.exitCode, 0);
    EXPECT_EQ(end.errors, "");
    EXPECT_FALSE(simulator.lockHolder());
}

TEST_P(OpenOcd, PlaysFilesAndTellsRightFromWrong) {
    const auto cable = serve("--bitbang");
    const std::string head = "TRST ABSENT;\nENDIR IDLE;\nENDDR IDLE;\nSTATE RESET;\nRUNTEST 100 TCK;\n"
                             "HIR 8 TDI (ff);\nHDR 1 TDI (0);\nTIR 10 TDI (3ff);\nTDR 1 TDI (0);\n";
    const std::string body = "SIR 5 TDI (0a);\nSDR 32 TDI (cafe1234);\nENDDR DRPAUSE;\n"
                             "SDR 32 TDI (11112222) TDO (cafe1234) MASK (ffffffff);\nENDDR IDLE;\n"
                             "SIR 5 TDI (06);\nSDR 32 TDI (0) TDO ";
    const auto right = fileWith("right.svf", head + body + "(17b1e0c3) MASK (ffffffff);\n");
    const auto wrong = fileWith("wrong.svf", head + body + "(17b1e0c2) MASK (ffffffff);\n");
    EXPECT_EQ(run(*cable, "svf " + right).exitCode, 0);
    EXPECT_EQ(run(*cable, "svf " + wrong).exitCode, 1);
    EXPECT_EQ(cable->end().exitCode, 0);
}

TEST_P(OpenOcd, KilledWithinAShiftLeavesTheServerAndTheLockWell) {
    const auto cable = serve("--bitbang");
    {
        support::Process killed(
            setup(*cable, "irscan board.chipset 0x0a; while 1 {drscan board.chipset 20000 0}"));
        ASSERT_TRUE(support::soon([this] {
            return withPort(
                [](auto& port) { return port.chain().state() == TAVO::simulator::TapState::pauseDr; });
        }));
        killed.signal(SIGKILL);
        EXPECT_EQ(killed.wait().signal, SIGKILL);
    }
    const auto next = run(*cable, "echo [scan_chain]");
    EXPECT_EQ(next.exitCode, 0) << next.errors;
    EXPECT_THAT(next.errors, HasSubstr("0x17b1e0c3"));
    EXPECT_EQ(simulator.lockHolder()->user, "engineer");
    const auto end = cable->end();
    EXPECT_EQ(end.exitCode, 0) << end.errors;
    EXPECT_FALSE(simulator.lockHolder());
}

INSTANTIATE_TEST_SUITE_P(Versions, OpenOcd,
                         testing::Values(ServedPort{"standard", "cpu0.jtag"},
                                         ServedPort{"standard", "csJtag.jtag"}, ServedPort{"legacy", "jtag"}),
                         [](const auto& served) {
                             auto name = served.param.topology + served.param.object;
                             std::erase(name, '.');
                             return name;
                         });

} // namespace
} // namespace tool_test
