#include <filesystem>
#include <fstream>
#include <map>
#include <string>
#include <utility>

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tests/cli/tool_fixture.h>

namespace tool_test {
namespace {

namespace fs = std::filesystem;
using testing::ContainsRegex;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

/// The tool with a configuration file and a password file of its own.
class Configured : public ToolTest {
protected:
    Configured()
        : folder(fs::path(testing::TempDir()) / ("tool_config_" + std::to_string(simulator.port())))
        , file((folder / "tavo" / "config.toml").string()) {
        fs::create_directories(folder / "tavo");
        std::ofstream(folder / "tavo" / "password") << "tavo\n";
        restrict("password", fs::perms::owner_read);
    }
    ~Configured() override { fs::remove_all(folder); }

    void restrict(const char* name, fs::perms mode) const { fs::permissions(folder / "tavo" / name, mode); }
    void write(const std::string& content) const { std::ofstream(file) << content; }
    /// A device "lab1", which is the simulated one.
    std::string lab1(const std::string& more = "") const {
        return fmt::format("[lab1]\nhost = \"127.0.0.1\"\nport = {}\nuser = \"engineer\"\n"
                           "password-file = \"password\"\n{}",
                           simulator.port(), more);
    }
    support::ProcessOutcome run(const Words& arguments,
                                std::map<std::string, std::string> environment = {}) const {
        environment.try_emplace("TAVO_CONFIG", file);
        auto setup = toolWith(arguments);
        setup.environment = std::move(environment);
        return support::runProcess(setup);
    }
    /// The value of that name in the document of "config show", with its source.
    nlohmann::json shown(const char* name, const Words& arguments,
                         const std::map<std::string, std::string>& environment = {}) const {
        const auto outcome = run(Words{"config", "show", "--json"} + arguments, environment);
        EXPECT_EQ(outcome.exitCode, 0) << outcome.errors;
        return jsonOf(outcome.output)["values"][name];
    }

    fs::path folder;
    std::string file;
};

const Words getPower{"relay", "get", "power"};

TEST_F(Configured, DevicesGoByTheirNames) {
    write(lab1());
    EXPECT_EQ(run(Words{"--host", "lab1"} + getPower).output, "off\n");
    EXPECT_EQ(run(getPower, {{"TAVO_HOST", "lab1"}}).output, "off\n");
    write(lab1() + "[defaults]\nhost = \"lab1\"\n");
    EXPECT_EQ(run(getPower).output, "off\n");
    write("[defaults]\nuser = \"engineer\"\npassword-file = \"password\"\n");
    EXPECT_EQ(run(Words{"--host", fmt::format("127.0.0.1:{}", simulator.port())} + getPower).output, "off\n")
        << "a name that is not in the file is a host";
}

TEST_F(Configured, FileIsFoundInTheUsersFolders) {
    write(lab1());
    const Words get = Words{"--host", "lab1"} + getPower;
    EXPECT_EQ(run(get, {{"TAVO_CONFIG", ""}, {"XDG_CONFIG_HOME", folder}}).output, "off\n");
    fs::create_directories(folder / ".config");
    fs::rename(folder / "tavo", folder / ".config" / "tavo");
    EXPECT_EQ(run(get, {{"TAVO_CONFIG", ""}, {"XDG_CONFIG_HOME", ""}, {"HOME", folder}}).output, "off\n");
    EXPECT_EQ(run(get, {{"TAVO_CONFIG", ""}, {"XDG_CONFIG_HOME", "relative"}, {"HOME", folder}}).output,
              "off\n");
}

TEST_F(Configured, FileNeedNotExistUnlessItIsNamed) {
    EXPECT_EQ(run(Words{"--host", fmt::format("127.0.0.1:{}", simulator.port()), "info"},
                  {{"TAVO_CONFIG", ""}, {"XDG_CONFIG_HOME", folder}})
                  .exitCode,
              0);
    const auto named = run(Words{"--host", "127.0.0.1", "info"});
    EXPECT_EQ(named.exitCode, 2);
    EXPECT_EQ(named.errors, fmt::format("tavo: cannot read '{}': No such file or directory\n", file));
}

TEST_F(Configured, AnOptionBeatsTheEnvironmentWhichBeatsTheSectionWhichBeatsTheDefaults) {
    write("[defaults]\nuser = \"d\"\nport = 1\n[lab1]\nuser = \"s\"\nport = 2\n[lab2]\n");
    const std::map<std::string, std::string> environment{{"TAVO_USER", "e"}, {"TAVO_PORT", "3"}};
    using Variables = std::map<std::string, std::string>;
    const auto expectShown = [&](const Words& arguments, const Variables& variables, const char* user,
                                 int port, const char* from, const std::string& source) {
        for (const auto& [name, value] :
             {std::pair<const char*, nlohmann::json>{"user", user}, {"port", port}}) {
            const auto found = shown(name, arguments, variables);
            EXPECT_EQ(found["value"], value);
            EXPECT_EQ(found["from"], from);
            EXPECT_THAT(found["source"].get<std::string>(), StartsWith(source));
        }
    };
    expectShown({"--host", "lab1", "--user", "o", "--port", "4"}, environment, "o", 4, "option", "--");
    expectShown({"--host", "lab1"}, environment, "e", 3, "environment", "TAVO_");
    expectShown({"--host", "lab1"}, Variables{}, "s", 2, "file", file + ":");
    expectShown({"--host", "lab2"}, Variables{}, "d", 1, "file", file + ":");
    EXPECT_EQ(shown("port", {"--host", "lab1"})["source"], file + ":6:8");
    EXPECT_EQ(shown("timeout", {}), nlohmann::json::parse(R"({"value": 10.0, "from": "default"})"));
    EXPECT_EQ(shown("user", {"--sim"}, environment)["value"], nlohmann::json())
        << "a simulated device is nobody's";
}

TEST_F(Configured, SecurityAndTimeLimitCanBeTakenBack) {
    write("[lab1]\nsecure = true\ntimeout = \"1m\"\n");
    EXPECT_EQ(shown("secure", {"--host", "lab1"})["value"], true);
    EXPECT_EQ(shown("port", {"--host", "lab1"})["value"], 6124);
    EXPECT_EQ(shown("secure", {"--host", "lab1", "--no-secure"})["value"], false);
    EXPECT_EQ(shown("port", {"--host", "lab1", "--no-secure"})["value"], 6123);
    EXPECT_EQ(shown("timeout", {"--host", "lab1"})["value"], 60.0);
    EXPECT_EQ(shown("timeout", {"--host", "lab1", "--timeout", "0"})["value"], 0.0);
}

TEST_F(Configured, PortMayStandBehindTheHost) {
    write("[lab1]\nport = 2\n");
    EXPECT_EQ(shown("port", {"--host", "lab1:7"})["value"], 7);
    EXPECT_EQ(shown("port", {"--host", "lab1:7"}, {{"TAVO_PORT", "8"}})["value"], 7);
    EXPECT_EQ(shown("port", {"--host", "[::1]:7", "--port", "7"})["value"], 7);
    EXPECT_EQ(shown("host", {"--host", "[::1]:7"})["value"], "::1");
    const auto both = run({"--host", "lab1:7", "--port", "8", "info"});
    EXPECT_EQ(both.exitCode, 2);
    EXPECT_EQ(both.errors, "tavo: --port is 8, but --host says port 7\n");
    EXPECT_EQ(run({"info"}, {{"TAVO_HOST", "a:7"}, {"TAVO_PORT", "8"}}).errors,
              "tavo: TAVO_PORT is 8, but TAVO_HOST says port 7\n");
    EXPECT_EQ(run({"--host", "a:99999", "info"}).errors,
              "tavo: --host: port: Value 99999 not in range 1 to 65535\n");
    EXPECT_EQ(run({"--host", "a", "info"}, {{"TAVO_PORT", "many"}}).exitCode, 2);
}

TEST_F(Configured, PasswordOfTheEnvironmentBeatsAFileThatNoOptionNames) {
    write(lab1());
    const Words get = Words{"--host", "lab1"} + getPower;
    EXPECT_EQ(run(get, {{"TAVO_PASSWORD", "wrong"}}).exitCode, 4);
    EXPECT_EQ(run(get + Words{"--password-file", (folder / "tavo" / "password").string()},
                  {{"TAVO_PASSWORD", "wrong"}})
                  .exitCode,
              0);
    EXPECT_THAT(run({"config", "show", "--host", "lab1"}, {{"TAVO_PASSWORD", "secret"}}).output,
                testing::AllOf(ContainsRegex("password-file +none +environment variable TAVO_PASSWORD\n"),
                               Not(HasSubstr("secret"))));
}

TEST_F(Configured, PasswordFileOfOthersIsToldAndRefusedWhenStrict) {
    write(lab1());
    restrict("password", fs::perms::owner_read | fs::perms::others_read);
    const Words get = Words{"--host", "lab1"} + getPower;
    const auto lax = run(get);
    EXPECT_EQ(lax.output, "off\n");
    EXPECT_THAT(lax.errors, HasSubstr("is accessible to others: its mode is 0404"));
    const auto strict = run(Words{"--strict"} + get);
    EXPECT_EQ(strict.exitCode, 2);
    EXPECT_THAT(strict.errors, HasSubstr("is accessible to others: its mode is 0404"));
    EXPECT_THAT(strict.output, IsEmpty());
    EXPECT_EQ(run({"config", "check"}).exitCode, 0);
    EXPECT_THAT(run({"config", "check", "--strict"}).output, StartsWith(file + ":5:17: password-file: "));
}

TEST_F(Configured, FileThatOthersMayWriteIsToldAndRefusedWhenStrict) {
    write(lab1());
    restrict("config.toml", fs::perms::owner_read | fs::perms::others_write);
    const Words get = Words{"--host", "lab1"} + getPower;
    EXPECT_THAT(run(get).errors, HasSubstr("others may write the configuration file"));
    EXPECT_EQ(run(Words{"--strict"} + get).exitCode, 2);
}

TEST_F(Configured, BrokenFileStopsWhatNeedsItAndNothingElse) {
    write("[lab1]\nport = 70000\nusr = 1\n");
    for (const auto& arguments : {Words{"--host", "a", "info"}, Words{"hosts"}, Words{"config", "show"}}) {
        const auto outcome = run(arguments);
        EXPECT_EQ(outcome.exitCode, 2);
        EXPECT_EQ(
            outcome.errors,
            fmt::format("tavo: {}:2:8: port: Value 70000 not in range 1 to 65535 ('tavo config check' shows "
                        "1 more)\n",
                        file));
        EXPECT_THAT(outcome.output, IsEmpty());
    }
    for (const auto& arguments : {Words{"--help"}, Words{"--version"}, Words{"--sim", "info"}})
        EXPECT_EQ(run(arguments).exitCode, 0);
    EXPECT_EQ(simulator.connectionCount(), 0u);
}

TEST_F(Configured, CheckNamesEveryFault) {
    write("[lab1]\nport = 70000\nusr = 1\npassword-file = \"/nowhere/at/all\"\n");
    const auto text = run({"config", "check"});
    EXPECT_EQ(text.exitCode, 2);
    EXPECT_THAT(text.output,
                testing::MatchesRegex(fmt::format("{0}:2:8: port: [^\n]*\n{0}:3:1: unknown key [^\n]*\n"
                                                  "{0}:4:17: password-file: cannot read [^\n]*\n",
                                                  file)));
    EXPECT_EQ(text.errors, fmt::format("tavo: {}: 3 faults\n", file));
    const auto json = run({"config", "check", "--json"});
    const auto faults = jsonOf(json.output)["faults"];
    ASSERT_EQ(faults.size(), 3u);
    EXPECT_EQ(faults[1]["line"], 3);
    EXPECT_EQ(faults[1]["column"], 1);
    EXPECT_EQ(jsonOf(json.errors)["error"]["code"], 2);
    write(lab1());
    const auto sound = run({"config", "check"});
    EXPECT_EQ(sound.exitCode, 0) << sound.errors;
    EXPECT_EQ(sound.output, file + ": no faults, 1 devices\n");
    EXPECT_THAT(run({"config", "check"}, {{"TAVO_CONFIG", ""}, {"XDG_CONFIG_HOME", "/nowhere"}}).output,
                EndsWith("no configuration file /nowhere/tavo/config.toml\n"));
}

TEST_F(Configured, HostsAreOneALineInTheOrderOfTheFile) {
    write("[zulu]\ngroup = \"b\"\n[alpha]\nhost = \"10.0.0.1\"\ngroup = [\"a\", \"b\"]\n[mike]\n");
    EXPECT_EQ(run({"hosts"}).output, "zulu\nalpha\nmike\n");
    EXPECT_EQ(run({"hosts", "b"}).output, "zulu\nalpha\n");
    EXPECT_EQ(jsonOf(run({"hosts", "a", "--json"}).output),
              nlohmann::json::parse(
                  R"([{"name": "alpha", "host": "10.0.0.1", "port": 6123, "groups": ["a", "b"]}])"));
    const auto unknown = run({"hosts", "c"});
    EXPECT_EQ(unknown.exitCode, 2);
    EXPECT_EQ(unknown.errors, "tavo: no group 'c'; there are: a, b\n");
    write("");
    EXPECT_THAT(run({"hosts"}).output, IsEmpty());
    EXPECT_THAT(run({"hosts", "c"}).errors, HasSubstr("the configuration file has no groups"));
}

TEST_F(Configured, ADeviceMustBeNamedSomewhere) {
    write(lab1());
    const auto outcome = run({"info"});
    EXPECT_EQ(outcome.exitCode, 2);
    EXPECT_THAT(outcome.errors, HasSubstr("--host or --sim is required"));
}

} // namespace
} // namespace tool_test
