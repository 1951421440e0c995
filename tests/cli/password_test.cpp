#include <chrono>
#include <csignal>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>
#include <thread>

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/stat.h>

#include <tests/cli/tool_fixture.h>

namespace tool_test {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

class Password : public ToolTest {
protected:
    support::ProcessSetup setup(const Words& arguments = {}) const {
        return toolWith(address() + Words{"--user", "engineer"} + arguments + Words{"relay", "get", "power"});
    }
    std::string file(const std::string& content) {
        const auto name = testing::TempDir() + "tool_password_" + std::to_string(simulator.port());
        std::ofstream(name, std::ios::binary) << content;
        return name;
    }
};

TEST_F(Password, IsTheFirstLineOfTheFile) {
    for (const auto* content : {"tavo", "tavo\n", "tavo\r\nmore\n"}) {
        const auto name = file(content);
        EXPECT_EQ(support::runProcess(setup({"--password-file", name})).output, "off\n");
        std::remove(name.c_str());
    }
    const auto missing = support::runProcess(setup({"--password-file", "/nowhere/at/all"}));
    EXPECT_EQ(missing.exitCode, 2);
    EXPECT_THAT(missing.errors, HasSubstr("cannot read '/nowhere/at/all'"));
}

TEST_F(Password, OfTheFileComesBeforeThatOfTheEnvironment) {
    const auto name = file("tavo\n");
    auto both = setup({"--password-file", name});
    both.environment["TAVO_PASSWORD"] = "wrong";
    EXPECT_EQ(support::runProcess(both).exitCode, 0);
    std::remove(name.c_str());
}

TEST_F(Password, OfTheEnvironmentIsUsed) {
    auto environment = setup();
    environment.environment["TAVO_PASSWORD"] = "tavo";
    EXPECT_EQ(support::runProcess(environment).output, "off\n");
    environment.environment["TAVO_PASSWORD"] = "";
    EXPECT_EQ(support::runProcess(environment).exitCode, 4);
}

TEST_F(Password, InAFileThatIsOpenToOthersIsToldAndUsed) {
    const auto name = file("tavo\n");
    for (const mode_t mode : {0644u, 0620u, 0601u}) {
        ASSERT_EQ(::chmod(name.c_str(), mode), 0);
        const auto run = support::runProcess(setup({"--password-file", name}));
        EXPECT_EQ(run.output, "off\n");
        EXPECT_EQ(run.errors,
                  fmt::format("tavo: warning: the password file '{}' is accessible to others: its mode is "
                              "{:04o}, not 0600\n",
                              name, mode));
    }
    const auto warning = jsonOf(support::runProcess(setup({"--password-file", name, "--json"})).errors);
    EXPECT_THAT(warning["warning"]["message"].get<std::string>(), HasSubstr("its mode is 0601"));
    for (const mode_t mode : {0600u, 0400u}) {
        ASSERT_EQ(::chmod(name.c_str(), mode), 0);
        EXPECT_THAT(support::runProcess(setup({"--password-file", name})).errors, IsEmpty());
    }
    std::remove(name.c_str());
}

TEST_F(Password, OfTheEnvironmentIsNotLeftThere) {
    auto environment =
        toolWith(address() + Words{"--user", "engineer", "call", "system.usleep", "microseconds=1000000000"});
    environment.environment["TAVO_PASSWORD"] = "tavo";
    const auto before = simulator.requestCount();
    support::Process process(environment);
    const auto deadline = std::chrono::steady_clock::now() + support::processPatience;
    while (simulator.requestCount() < before + 5 && std::chrono::steady_clock::now() < deadline)
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    const auto contentOf = [&](const char* name) {
        std::ifstream in(fmt::format("/proc/{}/{}", process.id(), name), std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(in), {});
    };
    EXPECT_THAT(contentOf("environ"), HasSubstr("LC_ALL=C"));
    EXPECT_THAT(contentOf("environ"), Not(HasSubstr("TAVO_PASSWORD=tavo")));
    EXPECT_THAT(contentOf("limits"), testing::ContainsRegex("Max core file size +0 +0 "));
    process.signal(SIGTERM);
    EXPECT_EQ(process.wait().signal, SIGTERM);
}

TEST_F(Password, IsNoArgument) {
    for (const auto* option : {"--password", "-p"})
        EXPECT_EQ(support::runProcess(setup({option, "tavo"})).exitCode, 2) << option;
}

TEST_F(Password, WithoutSourceAndTerminalIsAUsageError) {
    const auto run = support::runProcess(setup());
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_EQ(run.errors, "tavo: no password: there is no terminal to ask at; use --password-file or the "
                          "environment variable TAVO_PASSWORD\n");
    EXPECT_EQ(simulator.connectionCount(), 0u);
}

TEST_F(Password, IsAskedForAtTheTerminalAndNotShown) {
    support::PseudoTerminal terminal;
    auto asked = setup();
    asked.terminal = terminal.name();
    support::Process process(asked);
    terminal.waitFor("Password of engineer: ");
    EXPECT_FALSE(terminal.echoes());
    terminal.type("tavo\n");
    const auto run = process.wait();
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_EQ(run.output, "off\n");
    EXPECT_TRUE(terminal.echoes());
    EXPECT_THAT(terminal.waitFor("\n"), Not(HasSubstr("tavo")));
}

TEST_F(Password, PromptGivesTheTerminalBackWhenASignalEndsIt) {
    for (const int signal : {SIGINT, SIGTERM}) {
        support::PseudoTerminal terminal;
        auto asked = setup();
        asked.terminal = terminal.name();
        support::Process process(asked);
        terminal.waitFor("Password of engineer: ");
        if (signal == SIGINT)
            terminal.type("ta\x03"); // Ctrl-C
        else
            process.signal(signal);
        EXPECT_EQ(process.wait().signal, signal);
        EXPECT_TRUE(terminal.echoes());
    }
    EXPECT_EQ(simulator.connectionCount(), 0u);
}

TEST_F(Password, PromptThatIsClosedIsAUsageError) {
    support::PseudoTerminal terminal;
    auto asked = setup();
    asked.terminal = terminal.name();
    support::Process process(asked);
    terminal.waitFor("Password of engineer: ");
    terminal.type("\x04"); // Ctrl-D
    EXPECT_EQ(process.wait().exitCode, 2);
    EXPECT_TRUE(terminal.echoes());
}

} // namespace
} // namespace tool_test
