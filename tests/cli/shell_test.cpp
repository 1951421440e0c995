#include <algorithm>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tests/cli/tool_fixture.h>

namespace tool_test {
namespace {

namespace fs = std::filesystem;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

class ShellCommand : public ToolTest {
protected:
    ShellCommand()
        : folder(fs::path(testing::TempDir()) / ("tool_shell_" + std::to_string(simulator.port()))) {
        fs::create_directory(folder);
    }
    ~ShellCommand() override { fs::remove_all(folder); }

    support::ProcessOutcome shell(const std::string& script, const Words& options = {}) const {
        return tool(options + Words{"shell"}, script);
    }
    /// A shell on a terminal, with a history of its own.
    support::ProcessSetup onTerminal(const support::PseudoTerminal& terminal,
                                     const Words& options = {}) const {
        auto setup = setupOf(options + Words{"shell"});
        setup.terminal = terminal.name();
        setup.environment["XDG_STATE_HOME"] = (folder / "state").string();
        setup.environment["TERM"] = "vt100";
        setup.environment["INPUTRC"] = "/dev/null";
        return setup;
    }
    void awaitCalls(std::string_view object, std::string_view method, std::size_t count) const {
        const auto deadline = std::chrono::steady_clock::now() + support::processPatience;
        while (callsOf(object, method).size() < count && std::chrono::steady_clock::now() < deadline)
            std::this_thread::sleep_for(std::chrono::milliseconds(2));
        EXPECT_GE(callsOf(object, method).size(), count);
    }

    /// The line that was typed has been run, and the next one can be typed.
    static void awaitPrompt(const support::PseudoTerminal& terminal) {
        const auto deadline = std::chrono::steady_clock::now() + support::processPatience;
        while (terminal.echoes() && std::chrono::steady_clock::now() < deadline)
            std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }

    fs::path folder;
};

TEST_F(ShellCommand, RunsTheLinesOfItsInputOnOneOpenDevice) {
    const auto run = shell("relay set power on\n\n  # a comment\nrelay get power # and one more\n"
                           "call bench.lamp.set 'state=true'\nrelay get \"bench\".la\\mp\nrelay get power");
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_EQ(run.output, "on\nbench.lamp.set: return code 0\non\non\n");
    EXPECT_THAT(run.errors, IsEmpty());
    EXPECT_EQ(callsOf("device", "lock").size(), 1u);
    EXPECT_EQ(simulator.connectionCount(), 1u);
    EXPECT_FALSE(simulator.lockHolder());
}

TEST_F(ShellCommand, GivesEachDocumentInALine) {
    const auto run = shell("relay get power\nrelay set power on\n-relay get nothing\ninfo\n", {"--json"});
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_THAT(run.output, StartsWith("{\"name\": \"power\", \"on\": false, \"state\": 0}\n"
                                       "{\"name\": \"power\", \"returnCode\": 0}\n{\"boards\": [{"));
    EXPECT_EQ(documentsOf(run.output).size(), 3u);
    EXPECT_THAT(run.errors,
                StartsWith("{\"error\": {\"code\": 3, \"kind\": \"not-found\", \"message\": \"-:3: "));
    EXPECT_EQ(std::count(run.errors.begin(), run.errors.end(), '\n'), 1);
}

TEST_F(ShellCommand, EndsAtTheFirstFailureAndNamesItsLine) {
    const auto run = shell("relay get power\n\nrelay toggle power -- -1\nrelay set power on\n");
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.output, "off\n");
    EXPECT_EQ(run.errors,
              "tavo: -:3: power.toggle returned code 1: an argument is out of range or malformed\n");
    EXPECT_EQ(callsOf("power", "set").size(), 0u);
    EXPECT_FALSE(simulator.lockHolder());
    EXPECT_EQ(shell("relay get power\nrelay get nothing\n").exitCode, 3);
    EXPECT_EQ(jsonOf(shell("relay toggle power -- -1", {"--json"}).errors)["error"]["facts"]["returnCode"],
              1);
}

TEST_F(ShellCommand, GoesOnAfterALineThatMayFail) {
    const auto run =
        shell("-relay toggle power -- -1\n  - relay get nothing\n-relay get power\nrelay get 'x\n");
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_EQ(run.output, "off\n");
    EXPECT_THAT(run.errors, StartsWith("tavo: -:1: power.toggle returned code 1"));
    EXPECT_THAT(run.errors, HasSubstr("\ntavo: -:2: no object 'nothing'"));
    EXPECT_THAT(run.errors, EndsWith("\ntavo: -:4: a quote ' is not closed\n"));
}

TEST_F(ShellCommand, RunsAScriptFromAFile) {
    const auto script = (folder / "script").string();
    std::ofstream(script) << "relay set power on\nrelay frob\n";
    const auto run = tool({"shell", script});
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_EQ(run.errors, "tavo: " + script + ":2: there is no command 'relay frob' (see 'help relay')\n");
    EXPECT_EQ(callsOf("power", "set").size(), 1u);
    EXPECT_EQ(tool({"shell", (folder / "absent").string()}).exitCode, 2);
}

TEST_F(ShellCommand, TakesNoOptionsOfTheConnectionInALine) {
    for (const auto* line : {"relay get power --json", "relay get power --user me", "shell", "relay get"})
        EXPECT_EQ(shell(line).exitCode, 2) << line;
}

TEST_F(ShellCommand, LeavesTheRestOfTheInputToACommandThatReadsIt) {
    const auto run = shell("batch -\npower.set state=1\npower.get\n");
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_EQ(run.output, "1: power.set: return code 0\n2: power.get: return code 0\n  state = 1\n");
}

TEST_F(ShellCommand, EndsByExitAndShowsHelp) {
    const auto run = shell("help relay get\nrelay get --help\nexit\nrelay frob\n");
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_THAT(run.output, StartsWith("Show the state of a relay: on or off\n"));
    EXPECT_THAT(run.output.substr(10), HasSubstr("Show the state of a relay: on or off\n"));
}

TEST_F(ShellCommand, EndsOnASignalAndReleasesTheLock) {
    support::Process process(setupOf({"shell"}));
    EXPECT_EQ(process.wait().exitCode, 0) << "its input is empty";
    const support::PseudoTerminal terminal;
    support::Process waiting(onTerminal(terminal));
    awaitCalls("device", "lock", 2);
    waiting.signal(SIGTERM);
    EXPECT_EQ(waiting.wait().signal, SIGTERM);
    EXPECT_FALSE(simulator.lockHolder());
}

TEST_F(ShellCommand, IsEditedAtATerminalAndKeepsItsHistory) {
    support::PseudoTerminal terminal;
    {
        support::Process process(onTerminal(terminal));
        awaitCalls("device", "lock", 1);
        terminal.type("rel\tse\tpo\ton\n");
        awaitCalls("power", "set", 1);
        terminal.type("relay frob\n");
        terminal.type("relay get power\n");
        EXPECT_EQ(process.firstLine(), "on");
        awaitPrompt(terminal);
        terminal.type("\x04");
        const auto run = process.wait();
        EXPECT_EQ(run.exitCode, 0) << "a failure does not end it";
        EXPECT_EQ(run.output, "on\n");
        EXPECT_THAT(run.errors, HasSubstr("there is no command 'relay frob'"));
        EXPECT_EQ(callsOf("power", "set").at(0).parameters.toString(), "state=true");
    }
    const auto history = folder / "state" / "tavo" / "history";
    EXPECT_EQ(fs::status(history).permissions(), fs::perms::owner_read | fs::perms::owner_write);
    support::Process again(onTerminal(terminal));
    awaitCalls("device", "lock", 2);
    awaitPrompt(terminal);
    terminal.type("\x10\n"); // Ctrl-P: the line before
    EXPECT_EQ(again.firstLine(), "on");
    awaitPrompt(terminal);
    terminal.type("\x04");
    EXPECT_EQ(again.wait().exitCode, 0);
}

TEST_F(ShellCommand, GoesOnAfterCtrlC) {
    const support::PseudoTerminal terminal;
    support::Process process(onTerminal(terminal));
    awaitCalls("device", "lock", 1);
    terminal.type("relay set");
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    process.signal(SIGINT);
    std::this_thread::sleep_for(std::chrono::milliseconds(200));
    terminal.type("relay list --follow\n");
    awaitCalls("power", "get", 2);
    process.signal(SIGINT);
    std::this_thread::sleep_for(std::chrono::milliseconds(500));
    terminal.type("relay get cmos\nrelay set power on\nexit\n");
    const auto run = process.wait();
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_THAT(run.errors, HasSubstr("'cmos' is no relay"));
    EXPECT_EQ(callsOf("power", "set").size(), 1u);
    EXPECT_FALSE(simulator.lockHolder());
}

} // namespace
} // namespace tool_test
