#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tavo/cli/failure.h>
#include <tavo/cli/via_transport.h>
#include <tests/cli/tool_fixture.h>

namespace tool_test {
namespace {

namespace faults = TAVO::simulator::faults;
namespace fs = std::filesystem;
using namespace std::chrono_literals;
using TAVO::cli::viaCommand;
using testing::AnyOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

TEST(ViaCommand, StandsForHostPortAndPercentSign) {
    EXPECT_EQ(viaCommand("ssh gate -W %h:%p", "lab-tavo.example", 6123), "ssh gate -W lab-tavo.example:6123");
    EXPECT_EQ(viaCommand("", "a", 1), "");
    EXPECT_EQ(viaCommand("%%h '%h' \"%h\" %%%p", "fe80::1%eth0", 65535),
              "%h 'fe80::1%eth0' \"fe80::1%eth0\" %65535");
    EXPECT_EQ(viaCommand("nc box", "$(reboot)", 1), "nc box") << "a host that is not used may be anything";
}

TEST(ViaCommand, RefusesOtherPercentSigns) {
    for (const auto* pattern : {"%", "%u", "%h%", "%H", "% h"})
        EXPECT_THROW(viaCommand(pattern, "a", 1), TAVO::cli::Failure) << pattern;
}

TEST(ViaCommand, RefusesAHostThatMeansSomethingToAShell) {
    for (const auto* host : {"",        "a b", "a;b", "$(b)", "`b`",  "a|b",    "a&b",
                             "a>b",     "a<b", "a'b", "a\"b", "a\\b", "a\nb",   "a*",
                             "a?",      "[a]", "~a",  "#a",   "!a",   "a{b,c}", "-oProxyCommand=b",
                             "\xc3\xbc"})
        EXPECT_THROW(viaCommand("ssh gate -W '%h':%p", host, 1), TAVO::cli::Failure) << host;
}

class Via : public ToolTest {
protected:
    Via()
        : folder(fs::path(testing::TempDir()) / ("tool_via_" + std::to_string(simulator.port()))) {
        fs::create_directory(folder);
    }
    ~Via() override { fs::remove_all(folder); }

    /// Carries the connection, and notes each start with the number of its process.
    std::string tunnel() const { return note() + "exec '" TAVO_TUNNEL_PROGRAM "' %h %p"; }
    std::string note() const { return "echo $$ >> '" + (folder / "starts").string() + "'; "; }
    std::vector<pid_t> starts() const {
        std::ifstream in(folder / "starts");
        return {std::istream_iterator<pid_t>(in), {}};
    }
    void awaitStart() const {
        const auto deadline = std::chrono::steady_clock::now() + support::processPatience;
        while (starts().empty() && std::chrono::steady_clock::now() < deadline)
            std::this_thread::sleep_for(2ms);
        EXPECT_FALSE(starts().empty());
    }
    void expectAllEnded() const {
        for (const auto process : starts()) {
            EXPECT_EQ(::kill(process, 0), -1) << process << " still runs";
            EXPECT_EQ(errno, ESRCH);
        }
    }
    support::ProcessOutcome toolVia(const std::string& command, const Words& arguments) const {
        return tool(Words{"--via", command} + arguments);
    }

    fs::path folder;
};

TEST_F(Via, AHelperIsTheWayToTheDevice) {
    const auto run = toolVia(tunnel(), {"relay", "list"});
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_EQ(run.output, tool({"relay", "list"}).output);
    EXPECT_THAT(run.errors, IsEmpty());
    EXPECT_EQ(starts().size(), 1u);
    EXPECT_FALSE(simulator.lockHolder());
    expectAllEnded();
    EXPECT_EQ(toolVia(tunnel(), {"--secure", "tree"}).output, tool({"tree"}).output);
    EXPECT_EQ(toolVia(tunnel(), {"info"}).output, tool({"info"}).output);
    expectAllEnded();
}

TEST_F(Via, SocatIsTheWayToTheDevice) {
    if (std::system("command -v socat > /dev/null") != 0) // NOLINT(concurrency-mt-unsafe,cert-env33-c)
        GTEST_SKIP() << "needs the package socat";
    const auto run = toolVia(note() + "exec socat - TCP:%h:%p", {"call", "power.set", "state=true"});
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_EQ(tool({"relay", "get", "power"}).output, "on\n");
    expectAllEnded();
}

TEST_F(Via, GetsNeitherThePasswordNorItsVariable) {
    const auto seen = folder / "seen";
    const auto run = toolVia("env > '" + seen.string() + "'; " + tunnel(), {"relay", "get", "power"});
    EXPECT_EQ(run.output, "off\n") << run.errors;
    std::ifstream in(seen);
    const std::string environment(std::istreambuf_iterator<char>(in), {});
    EXPECT_THAT(environment, HasSubstr("LC_ALL=C"));
    EXPECT_THAT(environment, Not(HasSubstr("TAVO_PASSWORD")));
}

TEST_F(Via, ACommandThatFailsIsNamedWithItsStatus) {
    const auto run = toolVia("echo no route >&2; exit 3", {"info"});
    EXPECT_EQ(run.exitCode, 5);
    // Which of the two fails depends on whether the command ends before the first request goes out.
    EXPECT_THAT(run.errors, AnyOf(StartsWith("no route\ntavo: Connection to device closed unexpectedly. "),
                                  StartsWith("no route\ntavo: Error transmitting message call to device. ")));
    EXPECT_THAT(run.errors, EndsWith("The command 'echo no route >&2; exit 3' ended with exit status 3.\n"));
    const auto absent = toolVia("/no/such/program %h", {"relay", "list"});
    EXPECT_EQ(absent.exitCode, 5);
    EXPECT_THAT(absent.errors,
                HasSubstr("The command '/no/such/program 127.0.0.1' ended with exit status 127."));
    EXPECT_THAT(toolVia("kill -9 $$", {"info"}).errors,
                HasSubstr("The command 'kill -9 $$' was ended by signal 9."));
}

TEST_F(Via, WhatDoesNotFitIsAUsageError) {
    EXPECT_EQ(toolVia("%x", {"info"}).exitCode, 2);
    EXPECT_EQ(runTool({"--via", "cat", "info"}).exitCode, 2);
    EXPECT_EQ(runTool({"--via", "cat", "--sim", "info"}).exitCode, 2);
    const auto injected = runTool({"--via", note() + "cat %h", "--host", "a;b", "info"});
    EXPECT_EQ(injected.exitCode, 2);
    EXPECT_THAT(injected.errors, HasSubstr("the host 'a;b' cannot stand for %h"));
    EXPECT_THAT(starts(), IsEmpty());
}

TEST_F(Via, SomethingElseThanADeviceIsAnErrorOfTheProtocolOrTheNetwork) {
    const auto echo = toolVia("cat", {"--timeout", "2s", "info"});
    EXPECT_THAT(echo.exitCode, testing::AnyOf(5, 9));
    const auto text = toolVia("echo Welcome to the gateway; cat > /dev/null", {"--timeout", "2s", "info"});
    EXPECT_THAT(text.exitCode, testing::AnyOf(5, 9));
}

TEST_F(Via, AConnectionThatIsMadeAnewStartsTheCommandAgain) {
    const auto ahead = requestsUntil("power", "get", {"call", "power.get"});
    simulator.failNext(faults::Close{}, ahead);
    EXPECT_EQ(toolVia(tunnel(), {"call", "power.get"}).exitCode, 5);
    EXPECT_EQ(starts().size(), 2u) << "the second gives the lock back";
    EXPECT_FALSE(simulator.lockHolder());
    expectAllEnded();
}

TEST_F(Via, ATimeoutEndsACommandThatDoesNothing) {
    const auto start = std::chrono::steady_clock::now();
    const auto run = toolVia(note() + "exec sleep 1000", {"--timeout", "200ms", "info"});
    EXPECT_EQ(run.exitCode, 5);
    EXPECT_THAT(run.errors, HasSubstr("Call to device timed out."));
    EXPECT_LT(std::chrono::steady_clock::now() - start, 30s);
    expectAllEnded();
}

TEST_F(Via, ASignalEndsACommandThatDoesNothing) {
    support::Process process(setupOf({"--via", note() + "exec sleep 1000", "relay", "list"}));
    awaitStart();
    process.signal(SIGINT);
    EXPECT_EQ(process.wait().signal, SIGINT);
    expectAllEnded();
}

TEST_F(Via, ACommandThatDoesNotWantToEndIsKilled) {
    const auto run =
        toolVia(note() + "trap '' TERM; while :; do sleep 0.1; done", {"--timeout", "200ms", "info"});
    EXPECT_EQ(run.exitCode, 5);
    expectAllEnded();
}

TEST_F(Via, CtrlCAtTheTerminalReleasesTheLockThroughTheCommand) {
    support::PseudoTerminal terminal;
    auto setup = setupOf({"--via", tunnel(), "call", "system.usleep", "microseconds=1000000000"});
    setup.terminal = terminal.name();
    support::Process process(setup);
    const auto deadline = std::chrono::steady_clock::now() + support::processPatience;
    while (!simulator.lockHolder() && std::chrono::steady_clock::now() < deadline)
        std::this_thread::sleep_for(2ms);
    std::this_thread::sleep_for(100ms);
    terminal.type("\x03");
    EXPECT_EQ(process.wait().signal, SIGINT);
    EXPECT_FALSE(simulator.lockHolder());
    expectAllEnded();
}

TEST_F(Via, LargeBlocksGoAndComeWhole) {
    EXPECT_EQ(toolVia(tunnel(), {"batch", (folder / "absent").string()}).exitCode, 2);
    std::string calls;
    for (int i = 0; i < 20000; ++i)
        calls += "power.type\n";
    const auto direct = tool({"batch", "-"}, calls);
    const auto through = tool({"--via", tunnel(), "batch", "-"}, calls);
    EXPECT_EQ(direct.exitCode, 0);
    EXPECT_TRUE(through.output == direct.output) << through.errors;
}

} // namespace
} // namespace tool_test
