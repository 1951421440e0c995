#include <chrono>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <tests/cli/share/share_fixture.h>

namespace tool_test {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

/// Lines of real shells, with a share in front of a simulated device, and a configuration that names it.
class ShellLines : public ShareTest {
protected:
    ShellLines() {
        simulator.inspect([](TAVO::simulator::Appliance& appliance) {
            appliance.add<TAVO::simulator::Relay>("red light:1");
        });
        const auto port = std::to_string(simulator.port());
        std::ofstream(folder / "config.toml") << "[defaults]\nuser = \"engineer\"\n"
                                                 "[lab1]\nhost = \"127.0.0.1:" +
                                                     port + "\"\ngroup = \"rack1\"\n";
        std::ofstream(folder / "an image.bin") << "x";
        // Lines are completed by the tool; what they run says which words it was given.
        const auto tool = folder / "tavo-bin";
        std::filesystem::create_directories(tool);
        std::ofstream(tool / "tavo") << "#!/bin/sh\n"
                                        "test \"$1\" = complete-words && exec '" TAVO_PROGRAM "' \"$@\"\n"
                                        "printf '<%s>' \"$@\"; echo .\n";
        std::filesystem::permissions(tool / "tavo", std::filesystem::perms::owner_all);
        for (const std::string shell : {"bash", "zsh", "fish"})
            std::ofstream(folder / shell) << runTool({"completion", shell}).output;
    }

    support::ProcessSetup inShell(const Words& command) const {
        support::ProcessSetup setup{.program = "/usr/bin/env", .arguments = command};
        setup.environment = {{"PATH", (folder / "tavo-bin").string() + ":/usr/bin:/bin"},
                             {"HOME", folder.string()},
                             {"XDG_RUNTIME_DIR", folder.string()},
                             {"TAVO_CONFIG", (folder / "config.toml").string()},
                             {"TERM", "xterm"},
                             {"PS1", "$ "}};
        return setup;
    }
    support::ProcessOutcome complete(const Words& words, bool quoted = false) const {
        auto setup = inShell(Words{TAVO_PROGRAM, "complete-words"} + (quoted ? Words{"--quoted"} : Words{}) +
                             Words{"--"} + words);
        return support::runProcess(setup);
    }
    /// Tries until the share has answered in time.
    bool soonCompletes(const Words& words, const std::string& answer) const {
        return soon([&] { return complete(words).output.find(answer) != std::string::npos; });
    }

    /// Types lines at a shell; each must run with the words that stand behind it.
    struct TypedLine {
        std::string keys;
        std::string words;
    };
    void type(const Words& shell, const std::string& setUp) {
        ASSERT_TRUE(soonCompletes({"--host", "lab1", "relay", "get", ""}, "red light:1\n"));
        support::PseudoTerminal terminal;
        auto setup = inShell(shell);
        setup.terminal = terminal.name();
        setup.outputFile = terminal.name();
        setup.errorsOnTerminal = true;
        support::Process process(setup);
        terminal.type("cd '" + folder.string() + "'; " + setUp + "; echo rea''dy\r");
        terminal.waitFor("ready");
        unsigned count = 0;
        for (const auto& [keys, words] : lines) {
            // A share that is slow for once gives no names.
            bool hasRun = false;
            for (unsigned attempts = 0; attempts < 20 && !hasRun; ++attempts) {
                const auto number = std::to_string(++count);
                terminal.type("tavo " + keys + "\r");
                terminal.type("echo do''ne" + number + "\r");
                hasRun = terminal.waitFor("done" + number).find(words + ".") != std::string::npos;
            }
            EXPECT_TRUE(hasRun) << keys;
        }
        terminal.type("exit\r");
        process.wait();
    }

    const std::vector<TypedLine> lines{
        {"rel\tg\tnothing", "<relay><get><nothing>"},
        {"--host la\t relay get pow\t", "<--host><lab1><relay><get><power>"},
        {"--host=la\t relay li\t", "<--host=lab1><relay><list>"},
        {"--host lab1 call power.s\tstate=1", "<--host><lab1><call><power.set><state=1>"},
        {"--host lab1 relay get bench.l\t", "<--host><lab1><relay><get><bench.lamp>"},
        {"--host lab1 relay get re\t", "<--host><lab1><relay><get><red light:1>"},
        {"--host lab1 relay get red\\ light:\tb", "<--host><lab1><relay><get><red light:1><b>"},
        {"--host lab1 relay get \"red li\tc", "<--host><lab1><relay><get><red light:1><c>"},
        {"--host lab1 header status --object=bench.dr\tx",
         "<--host><lab1><header><status><--object=bench.drawerx>"},
        {"rom load an\t", "<rom><load><an image.bin>"},
        {"--password-file=an\t", "<--password-file=an image.bin>"},
        {"relay nonsense \t", "<relay><nonsense>"},
    };
};

TEST_F(ShellLines, AreCompletedInBash) { type({"bash", "--norc", "--noprofile", "-i"}, "source ./bash"); }

TEST_F(ShellLines, AreCompletedInBashWithItsCommonCompletions) {
    type({"bash", "--norc", "--noprofile", "-i"},
         "source /usr/share/bash-completion/bash_completion; source ./bash");
}

TEST_F(ShellLines, AreCompletedInZsh) {
    type({"zsh", "-f", "-i"}, "autoload -Uz compinit; compinit -u -D; source ./zsh");
}

TEST_F(ShellLines, AreCompletedInFish) {
    ASSERT_TRUE(soonCompletes({"--host", "lab1", "relay", "get", ""}, "red light:1\n"));
    const auto completedOnce = [&](const std::string& line) {
        const auto outcome = support::runProcess(
            inShell({"fish", "--no-config", "-c", "cd $argv[1]; source ./fish; complete -C $argv[2]",
                     folder.string(), line}));
        EXPECT_THAT(outcome.errors, IsEmpty());
        return outcome.output;
    };
    const auto completed = [&](const std::string& line) {
        auto output = completedOnce(line);
        for (unsigned attempts = 1; attempts < 20 && output.empty(); ++attempts)
            output = completedOnce(line);
        return output;
    };
    EXPECT_EQ(completed("tavo rel"), "relay\n");
    EXPECT_EQ(completed("tavo --host la"), "lab1\n");
    EXPECT_EQ(completed("tavo --host=la"), "--host=lab1\n");
    EXPECT_EQ(completed("tavo --host lab1 relay get pow"), "power\n");
    EXPECT_EQ(completed("tavo --host lab1 relay get red\\ l"), "red light:1\n");
    EXPECT_EQ(completed("tavo --host lab1 relay get 'red l"), "red light:1\n");
    EXPECT_EQ(completed("tavo --host lab1 call power.s"), "power.set\n");
    EXPECT_EQ(completed("tavo rom load an"), "an image.bin\n");
    EXPECT_EQ(completed("tavo --password-file=an"), "--password-file=an image.bin\n");
    EXPECT_EQ(completedOnce("tavo relay nonsense "), "");
}

TEST_F(ShellLines, NeverOpenTheDevice) {
    ASSERT_TRUE(soonCompletes({"--host", "lab1", "call", "power."}, "power.toggle\n"));
    const auto connections = simulator.connectionCount();
    share->end();
    for (const Words& words :
         {Words{"--host", "lab1", "relay", "get", ""}, Words{"--host", "lab1", "call", ""}}) {
        const auto outcome = complete(words);
        EXPECT_EQ(outcome.output, "none\n");
        EXPECT_THAT(outcome.errors, IsEmpty());
        EXPECT_EQ(outcome.exitCode, 0);
    }
    EXPECT_EQ(simulator.connectionCount(), connections);
}

TEST_F(ShellLines, DoNotWaitForAShareThatIsStopped) {
    ASSERT_TRUE(soonCompletes({"--host", "lab1", "relay", "get", ""}, "power\n"));
    share->process().signal(SIGSTOP);
    const auto begin = std::chrono::steady_clock::now();
    const auto outcome = complete({"--host", "lab1", "relay", "get", ""});
    const auto time = std::chrono::steady_clock::now() - begin;
    share->process().signal(SIGCONT);
    EXPECT_EQ(outcome.output, "none\n");
    EXPECT_THAT(outcome.errors, IsEmpty());
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_LT(time, std::chrono::seconds(5)) << "and not --timeout";
}

TEST_F(ShellLines, TakeTheDeviceOfTheLine) {
    const auto address = "127.0.0.1:" + std::to_string(simulator.port());
    ASSERT_TRUE(soonCompletes({"--host", address, "relay", "get", "p"}, "none\npower\n"));
    EXPECT_TRUE(soonCompletes({"relay", "get", "--host=" + address, "--user", "engineer", "p"}, "\npower\n"));
    EXPECT_EQ(complete({"--host", address, "--user", "guest", "relay", "get", "p"}).output, "none\n");
    EXPECT_EQ(complete({"--host", address, "--port", "1", "relay", "get", "p"}).output, "none\n");
    EXPECT_EQ(complete({"--host", address, "--port", "x", "relay", "get", "p"}).output, "none\n");
    EXPECT_EQ(complete({"--sim", "relay", "get", "p"}).output, "none\n");
    EXPECT_EQ(complete({"relay", "get", "p"}).output, "none\n");
}

TEST_F(ShellLines, SayNothingOfAConfigurationWithFaults) {
    std::ofstream(folder / "config.toml") << "[lab1\nhost = 3";
    for (const Words& words :
         {Words{"--host", ""}, Words{"--host", "lab1", "relay", "get", ""}, Words{"hosts", ""}}) {
        const auto outcome = complete(words);
        EXPECT_THAT(outcome.output, StartsWith("none\n"));
        EXPECT_THAT(outcome.errors, IsEmpty());
        EXPECT_EQ(outcome.exitCode, 0);
    }
    std::filesystem::remove(folder / "config.toml");
    EXPECT_EQ(complete({"--host", ""}).output, "none\n");
    EXPECT_EQ(complete({"--host", ""}).exitCode, 0);
}

TEST_F(ShellLines, MayHaveOpenQuotes) {
    EXPECT_EQ(complete({"--host", "\"la"}, true).output, "none\nlab1\n");
    EXPECT_EQ(complete({"--host", "'la"}, true).output, "none\nlab1\n");
    EXPECT_EQ(complete({"'relay'", "\"s\"e"}, true).output, "none\nset\n");
    EXPECT_EQ(complete({"relay", "set\\"}, true).output, "none\n");
    EXPECT_EQ(complete({}).output.substr(0, 10), "none\ninfo\n");
}

TEST_F(ShellLines, TakeNoNamesWithControlCharacters) {
    simulator.inspect([](TAVO::simulator::Appliance& appliance) {
        appliance.add<TAVO::simulator::Relay>("evil\x1b[2J");
        appliance.add<TAVO::simulator::Relay>("two\nlines");
    });
    share->end();
    share = start();
    ASSERT_TRUE(soonCompletes({"--host", "lab1", "relay", "get", ""}, "power\n"));
    const auto names = complete({"--host", "lab1", "relay", "get", ""}).output;
    EXPECT_THAT(names, AllOf(Not(HasSubstr("evil")), Not(HasSubstr("lines"))));
}

} // namespace
} // namespace tool_test
