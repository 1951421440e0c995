#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tests/cli/tool_fixture.h>

namespace tool_test {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::Not;

class TraceOfTool : public ToolTest {
protected:
    TraceOfTool()
        : folder(fs::path(testing::TempDir()) / ("trace_" + std::to_string(simulator.port()))) {
        fs::create_directory(folder);
    }
    ~TraceOfTool() override { fs::remove_all(folder); }

    std::string path(const std::string& name) const { return (folder / name).string(); }
    static std::string contentOf(const std::string& file) {
        std::ifstream in(file, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }
    /// The "call" of every line of the trace.
    static std::vector<std::string> shownCalls(const Words& arguments) {
        const auto shown = runTool(Words{"--json", "trace", "show"} + arguments);
        EXPECT_EQ(shown.exitCode, 0) << shown.errors;
        std::vector<std::string> names;
        for (const auto& line : documentsOf(shown.output))
            names.push_back(line["call"]);
        return names;
    }
    /// Plays the trace to one run of the tool.
    static support::ProcessOutcome replayed(const std::string& file, const Words& arguments, int status) {
        support::Process device(
            {.program = TAVO_SIM_PROGRAM, .arguments = {"--port", "0", "--replay", file}});
        const auto line = device.firstLine();
        auto setup =
            toolWith(Words{"--host", line.substr(line.find("127")), "--user", "somebody"} + arguments);
        setup.environment["TAVO_PASSWORD"] = "a longer one";
        support::runProcess(setup);
        auto outcome = device.wait();
        EXPECT_EQ(outcome.exitCode, status) << outcome.errors;
        return outcome;
    }

    fs::path folder;
};

TEST_F(TraceOfTool, ShowsWhatTheDeviceWasAsked) {
    const auto file = path("trace.pcapng");
    std::ofstream(path("script")) << "relay list\nrelay set power on\ntime get\ninfo\nrelay get power\n";
    simulator.clearCalls();
    ASSERT_EQ(tool({"--trace", file, "shell", path("script")}).exitCode, 0);
    std::vector<std::string> made;
    for (const auto& call : simulator.calls())
        made.push_back(call.object + "." + call.method);
    EXPECT_GT(made.size(), 30u);
    EXPECT_EQ(shownCalls({file}), made);
    EXPECT_EQ(fs::status(file).permissions(), fs::perms::owner_read | fs::perms::owner_write);
}

TEST_F(TraceOfTool, IsAConversationForOtherPrograms) {
    const auto file = path("trace.pcapng");
    ASSERT_EQ(tool({"--trace", file, "relay", "set", "power", "on"}).exitCode, 0);
    const auto tshark = [&](const Words& words) {
        return support::runProcess(
            {.program = "/usr/bin/tshark",
             .arguments =
                 Words{"-r", file, "-o", "tcp.check_checksum:TRUE", "-o", "ip.check_checksum:TRUE"} + words});
    };
    if (!fs::exists("/usr/bin/tshark"))
        GTEST_SKIP() << "without tshark";
    // One conversation with beginning and end, and nothing that is wrong.
    const auto seen =
        tshark({"-T", "fields", "-e", "tcp.stream", "-e", "tcp.flags.str", "-e", "_ws.malformed", "-e",
                "tcp.checksum.status", "-e", "ip.checksum.status", "-e", "tcp.analysis.flags"});
    std::istringstream lines(seen.output);
    std::vector<std::string> flags;
    for (std::string line; std::getline(lines, line);) {
        EXPECT_TRUE(line.ends_with("\t\t1\t1\t")) << line;
        flags.push_back(line);
    }
    ASSERT_GT(flags.size(), 20u);
    EXPECT_THAT(flags.front(), HasSubstr("S"));
    EXPECT_THAT(flags[flags.size() - 2], HasSubstr("F"));
}

TEST_F(TraceOfTool, HoldsSecretsOnlyIfItShall) {
    ASSERT_EQ(tool({"--trace", path("without"), "relay", "list"}).exitCode, 0);
    ASSERT_EQ(tool({"--trace", path("with"), "--trace-secrets", "relay", "list"}).exitCode, 0);
    const std::string parameters{"\0\0\0\x08"
                                 "engineer\0\0\0\x04"
                                 "tavo",
                                 20};
    const std::string blanked = parameters.substr(0, 16) + "****";
    EXPECT_THAT(contentOf(path("with")), HasSubstr(parameters));
    EXPECT_THAT(contentOf(path("without")), Not(HasSubstr(parameters)));
    EXPECT_THAT(contentOf(path("without")), HasSubstr(blanked));
    EXPECT_THAT(runTool({"trace", "show", path("with")}).output, Not(HasSubstr("\"tavo\"")));
}

TEST_F(TraceOfTool, IsReplayedAndTheFirstDifferenceNamed) {
    const auto file = path("trace.pcapng");
    ASSERT_EQ(tool({"--trace", file, "relay", "set", "power", "on"}).exitCode, 0);
    EXPECT_THAT(replayed(file, {"relay", "set", "power", "on"}, 0).errors, HasSubstr("replayed 9 of 9"));
    EXPECT_THAT(replayed(file, {"relay", "set", "power", "off"}, 1).errors,
                HasSubstr("power.set: byte 0 of the parameters differs: expected 01, came 00"));
    EXPECT_THAT(replayed(file, {"relay", "get", "power"}, 1).errors,
                HasSubstr("expected power.set, came power.get"));
}

TEST_F(TraceOfTool, TakesThePlaceOfAFileOnlyWhenThereIsSomethingToWrite) {
    const auto file = path("trace.pcapng");
    std::ofstream(file) << "of earlier";
    const auto refused = runTool({"--trace", file, "trace", "show", file});
    EXPECT_EQ(refused.exitCode, 2);
    EXPECT_THAT(refused.errors, HasSubstr("--trace has nothing to write: 'trace show' asks no device"));
    EXPECT_NE(runTool({"--trace", file, "--host", "127.0.0.1:1", "--user", "a", "info"}).exitCode, 0);
    EXPECT_EQ(contentOf(file), "of earlier");
    EXPECT_EQ(std::distance(fs::directory_iterator(folder), fs::directory_iterator()), 1);
    ASSERT_EQ(tool({"--trace", file, "doctor"}).exitCode, 0);
    EXPECT_THAT(shownCalls({file}), Not(testing::IsEmpty()));
}

TEST_F(TraceOfTool, HasNamesFromAFileWhereTheyHaveNotPassed) {
    const auto file = path("trace.pcapng");
    ASSERT_EQ(tool({"--trace", file, "relay", "set", "power", "on"}).exitCode, 0);
    const auto whole = contentOf(file);
    const auto word = [&whole](std::size_t place) {
        std::uint32_t read = 0;
        std::memcpy(&read, whole.data() + place, sizeof read);
        return read;
    };
    const auto packets = word(4) + word(word(4) + 4); // behind the head and the interface
    std::vector<std::size_t> requests;
    for (std::size_t block = packets; block < whole.size(); block += word(block + 4))
        if (word(block + 20) > 40 && whole.substr(block + 28 + 22, 2) == "\x17\xEB") // to port 6123
            requests.push_back(block);
    ASSERT_GT(requests.size(), 2u);
    std::ofstream(file, std::ios::binary)
        << whole.substr(0, packets) << whole.substr(requests[requests.size() - 2]);
    std::ofstream(path("tree.json")) << tool({"--json", "tree", "--methods"}).output;
    EXPECT_THAT(shownCalls({file}), testing::Each(HasSubstr("#")));
    EXPECT_THAT(shownCalls({"--names", path("tree.json"), file}),
                testing::ElementsAre("power.set", "device.unlock"));
    std::ofstream(path("tree.json")) << "[]";
    EXPECT_THAT(runTool({"trace", "show", "--names", path("tree.json"), file}).errors,
                HasSubstr("is no document of 'tavo --json tree --methods'"));
}

TEST_F(TraceOfTool, OfACutFileIsShownAsFarAsItGoes) {
    const auto file = path("trace.pcapng");
    ASSERT_EQ(tool({"--trace", file, "relay", "list"}).exitCode, 0);
    const auto whole = shownCalls({file});
    fs::resize_file(file, fs::file_size(file) * 3 / 4);
    const auto shown = runTool({"trace", "show", file});
    EXPECT_EQ(shown.exitCode, 0);
    EXPECT_THAT(shown.errors, HasSubstr("the file ends within a block"));
    const auto part = shownCalls({file});
    ASSERT_LT(part.size(), whole.size());
    EXPECT_TRUE(std::equal(part.begin(), part.end(), whole.begin()));
    std::ofstream(file) << "no capture";
    EXPECT_EQ(runTool({"trace", "show", file}).exitCode, 2);
    EXPECT_THAT(runTool({"trace", "show", file}).errors, HasSubstr("it is no pcapng file"));
}

} // namespace
} // namespace tool_test
