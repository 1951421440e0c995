#include <chrono>
#include <csignal>
#include <cstdio>
#include <fstream>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tavo/simulator/objects/com.h>
#include <tests/cli/tool_fixture.h>

namespace tool_test {
namespace {

using namespace TAVO::simulator;
using namespace std::chrono_literals;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

constexpr const char* leave = "\x1d"; // Ctrl-]

class SerialCommand : public SimulatedTool {
protected:
    void bootBoard() {
        simulator.inspect([](Appliance& appliance) {
            appliance.get<Relay>("power").set(true);
            appliance.clock().advance(5s);
        });
    }
    bool portIsOpen() {
        return simulator.inspect(
            [](Appliance& appliance) { return appliance.get<Com>("com").port().settings().has_value(); });
    }
    std::optional<SerialPort::Settings> settings() {
        return simulator.inspect(
            [](Appliance& appliance) { return appliance.get<Com>("com").port().settings(); });
    }
    void expectAllGivenBack(const support::PseudoTerminal& terminal) {
        EXPECT_TRUE(terminal.echoes());
        EXPECT_FALSE(portIsOpen());
        EXPECT_FALSE(simulator.lockHolder());
    }
};

/// Waits until the terminal hands over every key, or no more.
void awaitRaw(const support::PseudoTerminal& terminal, bool raw) {
    const auto deadline = std::chrono::steady_clock::now() + support::processPatience;
    while (terminal.echoes() == raw && std::chrono::steady_clock::now() < deadline)
        std::this_thread::sleep_for(2ms);
    EXPECT_NE(terminal.echoes(), raw);
}

/// The console on a terminal, when it is ready for keys.
class ConsoleOnTerminal {
public:
    explicit ConsoleOnTerminal(support::ProcessSetup setup)
        : process(onTerminal(std::move(setup), terminal)) {
        awaitRaw(terminal, true);
    }

    support::PseudoTerminal terminal;
    support::Process process;

private:
    static support::ProcessSetup onTerminal(support::ProcessSetup setup,
                                            const support::PseudoTerminal& terminal) {
        setup.terminal = terminal.name();
        return setup;
    }
};

TEST_F(SerialCommand, TalksToTheConsoleThroughPipes) {
    bootBoard();
    const auto run = tool({"serial", "--until", "target> ", "--wait", "30"}, "version\r");
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_EQ(run.output, "version\r\nTarget firmware 1.0\r\ntarget> ");
    EXPECT_THAT(run.errors, IsEmpty());
    EXPECT_FALSE(portIsOpen());
}

TEST_F(SerialCommand, SendsAndReceivesExactlyTheBytes) {
    std::string bytes;
    for (int round = 0; round < 40; ++round)
        for (int byte = 0; byte < 256; ++byte)
            bytes += static_cast<char>(byte);
    const auto run = tool({"serial", "--loopback", "--wait", "0"}, bytes);
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_TRUE(run.output == bytes);
    EXPECT_LE(callsOf("com", "send").size(), 3u);
}

TEST_F(SerialCommand, GivesOneDocumentAsJson) {
    const auto text = jsonOf(tool({"serial", "--loopback", "--wait", "0", "--json"}, "hello").output);
    EXPECT_EQ(text, nlohmann::json({{"object", "com"}, {"received", "hello"}}));
    const auto bytes = jsonOf(tool({"serial", "--loopback", "--json", "--until", "\n"}, "\xff\n").output);
    EXPECT_EQ(bytes["received"], nlohmann::json({{"hex-text", "ff0a"}}));
    EXPECT_EQ(bytes["reached"], true);
}

TEST_F(SerialCommand, FailsWhenTheWantedTextDoesNotCome) {
    const auto run = tool({"serial", "--loopback", "--until", "login:", "--wait", "0.1"}, "hello");
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.output, "hello");
    EXPECT_EQ(run.errors, "tavo: 'login:' did not arrive\n");
}

TEST_F(SerialCommand, OpensThePortAsTold) {
    const auto opened = [this](const Words& options) {
        simulator.clearCalls();
        EXPECT_EQ(tool(Words{"serial", "--wait", "0"} + options).exitCode, 0);
        return callsOf("com", "open").at(0).toString();
    };
    EXPECT_THAT(opened({}), HasSubstr("value1=115200 value2=8 flag1=false flag2=false value3=1 flag3=false "
                                      "flag4=false flag5=false flag6=false"));
    EXPECT_THAT(opened({"--baud", "9600", "--bits", "7", "--parity", "even", "--stop", "2", "--rtscts"}),
                HasSubstr("value1=9600 value2=7 flag1=true flag2=true value3=2 flag3=true flag4=false "
                          "flag5=false flag6=false"));
    EXPECT_THAT(opened({"--parity", "odd", "--dtrdsr", "--xonxoff", "--loopback"}),
                HasSubstr("flag1=true flag2=false value3=1 flag3=false flag4=true flag5=true flag6=true"));
    EXPECT_EQ(tool({"serial", "--baud", "12345"}).exitCode, 1);
    EXPECT_EQ(tool({"serial", "--parity", "some"}).exitCode, 2);
}

TEST_F(SerialCommand, IsAConsoleOnATerminalUntilTheKeyThatLeaves) {
    ConsoleOnTerminal console(setupOf({"serial", "--loopback", "--parity", "even"}));
    EXPECT_TRUE(settings() && settings()->parityEven);
    console.terminal.type("\x03\x1a\x04 all keys\n"); // Ctrl-C, Ctrl-Z, Ctrl-D
    EXPECT_EQ(console.process.firstLine(), "\x03\x1a\x04 all keys");
    console.terminal.type(std::string("bye") + leave + "lost");
    const auto run = console.process.wait();
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_EQ(run.output, "\x03\x1a\x04 all keys\nbye");
    EXPECT_THAT(run.errors, StartsWith("com: Ctrl-] leaves\n"));
    expectAllGivenBack(console.terminal);
}

TEST_F(SerialCommand, CanBeLeftByAnotherKeySoThatTheUsualOneIsSent) {
    ConsoleOnTerminal console(setupOf({"serial", "--loopback", "--leave", "^A"}));
    console.terminal.type("a\x1d"
                          "b\n");
    EXPECT_EQ(console.process.firstLine(), "a\x1d"
                                           "b");
    console.terminal.type("\x01");
    const auto run = console.process.wait();
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_THAT(run.errors, StartsWith("com: Ctrl-A leaves\n"));
    for (const auto* key : {"", "A", "^", "^1", "^AA"})
        EXPECT_EQ(tool({"serial", "--leave", key}).exitCode, 2) << key;
}

TEST_F(SerialCommand, SendsABreakAsAZeroByteAtASlowerRate) {
    EXPECT_EQ(tool({"serial", "--break", "--wait", "0"}).exitCode, 0);
    const auto opened = callsOf("com", "open");
    ASSERT_EQ(opened.size(), 2u);
    EXPECT_THAT(opened[0].toString(), HasSubstr("value1=57600 "));
    EXPECT_THAT(opened[1].toString(), HasSubstr("value1=115200 "));
    const auto sent = callsOf("com", "send");
    ASSERT_EQ(sent.size(), 1u);
    EXPECT_EQ(sent[0].parameters.find("data")->toString(), "00");
    EXPECT_FALSE(portIsOpen());
    const auto slowest = tool({"serial", "--break", "--baud", "300"});
    EXPECT_EQ(slowest.exitCode, 2);
    EXPECT_THAT(slowest.errors, HasSubstr("cannot send a break at 300 baud"));
}

TEST_F(SerialCommand, KeepsALogWithTimes) {
    const auto path = testing::TempDir() + "tool_serial_log_" + std::to_string(simulator.port());
    EXPECT_EQ(tool({"serial", "--loopback", "--log", path, "--wait", "0.1"}, "one\r\ntwo\x1b[1m").exitCode,
              0);
    EXPECT_EQ(tool({"serial", "--loopback", "--log", path, "--wait", "0.1"}, "three\n").exitCode, 0);
    std::ifstream log(path);
    std::vector<std::string> lines;
    for (std::string line; std::getline(log, line);)
        lines.push_back(line);
    std::remove(path.c_str());
    const auto time = "20[0-9-]{8}T[0-9:]{8}[.][0-9]{6}Z ";
    ASSERT_EQ(lines.size(), 6u);
    EXPECT_THAT(lines[0], testing::MatchesRegex(time + std::string("> one")));
    EXPECT_THAT(lines[1], testing::MatchesRegex(time + std::string("< one")));
    EXPECT_THAT(lines[2], testing::MatchesRegex(time + std::string("> two.x1b.1m")));
    EXPECT_THAT(lines[3], testing::MatchesRegex(time + std::string("< two.x1b.1m")));
    EXPECT_THAT(lines[4], testing::EndsWith(" > three"));
    EXPECT_THAT(lines[5], testing::EndsWith(" < three"));
    EXPECT_EQ(tool({"serial", "--log", "/no/such/folder/log"}).exitCode, 2);
}

TEST_F(SerialCommand, GivesTheTerminalBackWhenASignalEndsIt) {
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT}) {
        ConsoleOnTerminal console(setupOf({"serial"}));
        console.process.signal(signal);
        EXPECT_EQ(console.process.wait().signal, signal);
        expectAllGivenBack(console.terminal);
    }
}

TEST_F(SerialCommand, GivesTheTerminalBackWhileItIsStopped) {
    // A shell with job control, for a process that nobody can continue is never stopped.
    const support::PseudoTerminal terminal;
    auto setup = setupOf({"serial", "--loopback"});
    setup.arguments.insert(
        setup.arguments.begin(),
        {"-mc", "\"$0\" \"$@\"; echo stopped; read line; fg; echo ended $?", setup.program});
    setup.program = "/bin/sh";
    setup.terminal = terminal.name();
    support::Process shell(setup);
    awaitRaw(terminal, true);
    const auto children =
        "/proc/" + std::to_string(shell.id()) + "/task/" + std::to_string(shell.id()) + "/children";
    pid_t console = 0;
    std::ifstream(children) >> console;
    ASSERT_GT(console, 0);

    ASSERT_EQ(::kill(console, SIGTSTP), 0);
    EXPECT_EQ(shell.firstLine(), "stopped");
    EXPECT_TRUE(terminal.echoes());
    EXPECT_TRUE(portIsOpen());
    terminal.type("\n");
    awaitRaw(terminal, true);
    terminal.type(leave);
    const auto run = shell.wait();
    EXPECT_THAT(run.output, testing::EndsWith("ended 0\n")) << run.errors;
    expectAllGivenBack(terminal);
}

TEST_F(SerialCommand, TakesTheTerminalAgainWhenItGoesOnAfterAStopThatNobodySees) {
    const ConsoleOnTerminal console(setupOf({"serial"}));
    console.process.signal(SIGSTOP);
    console.terminal.makeCooked();
    EXPECT_TRUE(console.terminal.echoes());
    console.process.signal(SIGCONT);
    awaitRaw(console.terminal, true);
}

TEST_F(SerialCommand, GivesTheTerminalBackWhenASecondSignalEndsItBeforeASilentDevice) {
    ConsoleOnTerminal console(setupOf({"serial"}));
    simulator.failNext(faults::Silent{});
    std::this_thread::sleep_for(200ms);
    console.process.signal(SIGTERM);
    std::this_thread::sleep_for(200ms);
    console.process.signal(SIGTERM);
    EXPECT_EQ(console.process.wait().signal, SIGTERM);
    EXPECT_TRUE(console.terminal.echoes());
}

TEST_F(SerialCommand, GivesTheTerminalBackWhenTheDeviceIsGone) {
    ConsoleOnTerminal console(setupOf({"serial"}));
    simulator.stop();
    EXPECT_EQ(console.process.wait().exitCode, 5);
    EXPECT_TRUE(console.terminal.echoes());
}

TEST_F(SerialCommand, GivesTheTerminalBackWhenTheDeviceRefuses) {
    ConsoleOnTerminal console(setupOf({"serial"}));
    simulator.failNext(faults::DeviceError{1006, 0, "no more"});
    const auto run = console.process.wait();
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_THAT(run.errors, HasSubstr("no more"));
    expectAllGivenBack(console.terminal);
}

TEST_F(SerialCommand, HasNoJsonOnATerminal) {
    support::PseudoTerminal terminal;
    auto setup = setupOf({"serial", "--json"});
    setup.terminal = terminal.name();
    EXPECT_EQ(support::runProcess(setup).exitCode, 2);
    EXPECT_EQ(simulator.connectionCount(), 0u);
}

} // namespace
} // namespace tool_test
