#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <string_view>
#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tests/cli/command_names.h>
#include <tests/cli/talking_device.h>
#include <tests/cli/tool_fixture.h>
#include <tests/support/appliance_server.h>

namespace tool_test {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::Not;

/// Sets a window's title, forges a line, and has DEL, a C1 control character, a control of direction and a
/// byte that is not UTF-8.
const std::string hostile = " \x1b]0;title\x07\nforged\r\x7f\xc2\x9b"
                            "31m\xe2\x80\xae\xff";
const std::string shown = " \\x1b]0;title\\x07\\x0aforged\\x0d\\x7f\\u009b31m\\u202e\\xff";
const std::string shownAsJson = " \\u001b]0;title\\u0007\\nforged\\r\\u007f\\u009b31m\\u202e\xef\xbf\xbd";

constexpr std::size_t shares = 8;

class DeviceText : public testing::Test {
protected:
    DeviceText()
        : folder(fs::path(testing::TempDir()) / ("device_text_" + std::to_string(server.port()))) {
        fs::create_directory(folder);
        std::ofstream(folder / "image", std::ios::binary) << "\x01\x02";
        // A line of a batch cannot name an object with a line end in its name.
        std::ofstream(folder / "batch") << "device.info\n";
        std::ofstream(folder / "scans") << "SDR 16 TDI (0) TDO (1);\n";
        std::ofstream(folder / "script") << "relay list\n";
    }
    ~DeviceText() override { fs::remove_all(folder); }

    /// What each command is called with.
    std::map<Words, Words> arguments() const {
        const auto relay = device.nameOf("relay");
        const auto file = (folder / "image").string();
        return {{{"info"}, {}},
                {{"tree"}, {"--methods"}},
                {{"call"}, {device.nameOf("gpuDebug") + ".jtag.headerStatusGet"}},
                {{"batch"}, {(folder / "batch").string()}},
                {{"shell"}, {(folder / "script").string()}},
                {{"relay", "list"}, {}},
                {{"relay", "get"}, {relay}},
                {{"relay", "set"}, {relay, "on"}},
                {{"relay", "toggle"}, {relay}},
                {{"time", "get"}, {"--unit", "us"}},
                {{"time", "set"}, {"5"}},
                {{"firmware", "update"}, {"main", file, "-y"}},
                {{"firmware", "status"}, {"main"}},
                {{"header", "status"}, {}},
                {{"header", "clear"}, {}},
                {{"jtag", "scan"}, {}},
                {{"jtag", "shift"}, {"dr", "16", "0"}},
                {{"jtag", "state"}, {}},
                {{"jtag", "pins"}, {}},
                {{"jtag", "frequency"}, {}},
                {{"jtag", "options"}, {}},
                {{"jtag", "svf"}, {(folder / "scans").string()}},
                {{"hdt", "status"}, {}},
                {{"hdt", "request"}, {"on"}},
                {{"hdt", "snapshot", "clear"}, {}},
                {{"hdt", "mask"}, {}},
                {{"hdt", "trigger", "get"}, {"0"}},
                {{"hdt", "trigger", "set"}, {"0", "on"}},
                {{"gpu", "scan"}, {"16"}},
                {{"gpu", "mode"}, {}},
                {{"i2c", "detect"}, {"0x50", "0x51"}},
                {{"i2c", "dump"}, {"0x50", "--range", "0x00-0x01"}},
                {{"i2c", "get"}, {"0x50", "0", "2"}},
                {{"i2c", "set"}, {"0x50", "0", "1", "-y", "--verify"}},
                {{"i2c", "transfer"}, {"w1@0x50", "0", "r2", "-y"}},
                {{"post", "follow"}, {"--timeout", "0"}},
                {{"post", "list"}, {}},
                {{"post", "clear"}, {}},
                {{"rom", "load"}, {file, "-y"}},
                {{"rom", "save"}, {(folder / "saved").string()}},
                {{"rom", "verify"}, {file}},
                {{"serial"}, {"--wait", "0"}},
                {{"lock", "status"}, {}},
                {{"metrics"}, {}},
                {{"lock", "hold"}, {"true"}},
                {{"lock", "wait"}, {}},
                {{"lock", "release"}, {}},
                {{"lcd", "print"}, {"text"}},
                {{"lcd", "clear"}, {}},
                {{"lcd", "backlight"}, {"1"}},
                {{"lcd", "show"}, {}}};
    }

    support::ProcessSetup setupOf(const Words& words) const {
        auto setup = toolWith(
            Words{"--host", "127.0.0.1", "--port", std::to_string(server.port()), "--user", "engineer"} +
            words);
        setup.environment["TAVO_PASSWORD"] = "tavo";
        return setup;
    }
    support::ProcessOutcome tool(const Words& words) const { return support::runProcess(setupOf(words)); }

    /// Runs a share of the commands in both forms, and insists that nothing of what they write steers a
    /// terminal.
    void expectHarmlessOfShare(std::size_t share) {
        std::size_t number = 0;
        for (const auto& [command, words] : arguments()) {
            if (number++ % shares != share)
                continue;
            const auto name = testing::PrintToString(command);
            const auto text = tool(command + words);
            // The console's data goes as it is, and the display's lines stay lines.
            if (command == Words{"lcd", "show"})
                expectHarmless(withoutLineEnds(text.output), name);
            else if (command != Words{"serial"})
                expectHarmless(text.output, name);
            expectHarmless(text.errors, name);
            const auto json = tool(command + words + Words{"--json"});
            expectHarmless(withoutReplacement(json.output), name);
            expectHarmless(withoutReplacement(json.errors), name);
            EXPECT_EQ(text.exitCode, json.exitCode) << name << text.errors << json.errors;
            EXPECT_GE(text.exitCode, 0) << name;
            if (command == Words{"post", "follow"})
                documentsOf(json.output); // one for each code
            else if (!json.output.empty())
                jsonOf(json.output);
            documentsOf(json.errors); // one for each warning, then that of the failure
        }
    }

    static void expectHarmless(const std::string& text, const std::string& name) {
        const auto steers = [](char c) { return c != '\n' && (c < 0x20 || c > 0x7e); };
        EXPECT_TRUE(std::none_of(text.begin(), text.end(), steers)) << name << testing::PrintToString(text);
        EXPECT_THAT("\n" + text, Not(HasSubstr("\nforged"))) << name;
    }
    static std::string withoutLineEnds(std::string text) {
        std::erase(text, '\n');
        return text;
    }
    /// JSON has U+FFFD where a text is not UTF-8.
    static std::string withoutReplacement(std::string text) {
        constexpr std::string_view replacement = "\xef\xbf\xbd";
        for (auto at = text.find(replacement); at != std::string::npos; at = text.find(replacement))
            text.erase(at, replacement.size());
        return text;
    }

    TalkingDevice device{hostile};
    support::ApplianceServer server{device.appliance};
    fs::path folder;
};

TEST_F(DeviceText, OfEveryCommandIsKnownHere) {
    std::set<std::string> known;
    for (const auto& [words, unused] : arguments()) {
        std::string name;
        for (const auto& word : words)
            name += (name.empty() ? "" : " ") + word;
        known.insert(name);
    }
    EXPECT_EQ(commandNames(), known) << "a command that is added has its place in arguments()";
}

/// Of the commands, all of which are tested, a share in each test.
class DeviceTextOfCommands : public DeviceText, public testing::WithParamInterface<std::size_t> {};

TEST_P(DeviceTextOfCommands, SteersNoTerminalInResultsAndNames) { expectHarmlessOfShare(GetParam()); }

TEST_P(DeviceTextOfCommands, SteersNoTerminalInErrors) {
    server.change([this](auto&) {
        device.answer = [](const auto&) -> Bytes { throw support::DeviceFault{1006, hostile}; };
    });
    expectHarmlessOfShare(GetParam());
}

INSTANTIATE_TEST_SUITE_P(Shares, DeviceTextOfCommands, testing::Range(std::size_t{0}, shares));

TEST_F(DeviceText, InErrorsIsShown) {
    server.change([this](auto&) {
        device.answer = [](const auto&) -> Bytes { throw support::DeviceFault{1006, hostile}; };
    });
    EXPECT_THAT(tool({"time", "get"}).errors, HasSubstr(shown));
    EXPECT_THAT(tool({"time", "get", "--json"}).errors, HasSubstr(shownAsJson));
}

TEST_F(DeviceText, OfALockStandsOnOneLine) {
    server.change([](support::FakeAppliance& appliance) {
        appliance.object(0).method("lock", [](const Bytes&) -> Bytes {
            throw support::DeviceFault{1001, hostile};
        });
    });
    const auto run = tool({"relay", "list"});
    EXPECT_EQ(run.exitCode, 4);
    EXPECT_THAT(run.errors, HasSubstr(shown));
    expectHarmless(run.errors, "lock");
}

TEST_F(DeviceText, IsShown) {
    EXPECT_THAT(tool({"info"}).output, HasSubstr("name       " + shown + "\n"));
    EXPECT_THAT(tool({"tree"}).output, HasSubstr("`-- relay" + shown + "  relay 1.0.0  #10\n"));
    EXPECT_EQ(tool({"relay", "list"}).output, "relay" + shown + "  on\n");
    auto lines = shown;
    lines.replace(lines.find("\\x0a"), 4, "\n");
    EXPECT_EQ(tool({"lcd", "show"}).output, lines + "\n");
    EXPECT_THAT(tool({"header", "status"}).output, HasSubstr("  " + shown + "  connected, changed, error\n"));
    EXPECT_THAT(tool({"header", "status"}).output,
                HasSubstr("  " + shown + ", " + shown + " -- " + shown + ", " + shown + "\n"));
    EXPECT_EQ(tool({"call", device.nameOf("cfa633") + ".available"}).output,
              "cfa633" + shown + ".available: return code 0\n  available = 2\n  user = \"" + shown +
                  "\"\n  info = \"" + shown + "\"\n");
    EXPECT_THAT(tool({"call", "nothing.get"}).errors,
                HasSubstr("there are: device, system, private, cfa633" + shown + ", com" + shown + ", "));
}

TEST_F(DeviceText, IsEscapedInJson) {
    EXPECT_THAT(tool({"relay", "list", "--json"}).output,
                HasSubstr("\"name\": \"relay" + shownAsJson + "\""));
    EXPECT_THAT(tool({"tree", "--json"}).output, HasSubstr("\"fullName\": \"relay" + shownAsJson + "\""));
    const auto lcd = jsonOf(tool({"lcd", "show", "--json"}).output);
    std::ostringstream digits;
    for (const char character : hostile) {
        const auto byte = static_cast<unsigned char>(character);
        digits << "0123456789abcdef"[byte >> 4] << "0123456789abcdef"[byte & 15];
    }
    EXPECT_EQ(lcd["info"], nlohmann::json({{"hex-text", digits.str()}})) << "results lose nothing";
}

TEST_F(DeviceText, OfAConsoleGoesAsItIsAndItsNameDoesNot) {
    EXPECT_THAT(tool({"serial", "--wait", "0"}).output, testing::StartsWith("\x9b\x1b"));
    support::PseudoTerminal terminal;
    auto setup = setupOf({"serial"});
    setup.terminal = terminal.name();
    support::Process console(setup);
    const auto deadline = std::chrono::steady_clock::now() + support::processPatience;
    while (terminal.echoes() && std::chrono::steady_clock::now() < deadline)
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    terminal.type("\x1d"); // Ctrl-]
    const auto run = console.wait();
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.errors, "com" + shown + ": Ctrl-] leaves\n\n");
}

} // namespace
} // namespace tool_test
