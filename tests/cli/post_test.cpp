#include <algorithm>
#include <chrono>
#include <csignal>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tavo/simulator/objects/lpc.h>
#include <tests/cli/tool_fixture.h>

namespace tool_test {
namespace {

using namespace TAVO::simulator;
using namespace std::chrono_literals;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

constexpr const char* receiver = "lpc.lpcPostCode";
constexpr std::ptrdiff_t codesOfBoot = 60;

std::ptrdiff_t linesOf(const std::string& text) { return std::count(text.begin(), text.end(), '\n'); }

/// Its time stands still, so that a boot goes on only when a test says so.
class PostCommand : public SimulatedTool {
protected:
    PostCommand() {
        simulator.inspect([](Appliance& appliance) {
            appliance.clock().freeze();
            appliance.get<Relay>("power").set(true);
        });
    }
    void letPass(std::chrono::microseconds time) {
        simulator.inspect([time](Appliance& appliance) { appliance.clock().advance(time); });
    }
    std::size_t held() {
        return simulator.inspect([](Appliance& appliance) {
            return appliance.get<LpcPostCode>(receiver).postCodes().entries().size();
        });
    }
};

TEST_F(PostCommand, ListShowsTheCodesAndLeavesThem) {
    letPass(4s);
    const auto run = tool({"post", "list"});
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_THAT(run.output, StartsWith("     0.250000  01  port 80  flags 01\n"));
    EXPECT_THAT(run.output, EndsWith("     3.000000  AA  port 80  flags 00\n"));
    EXPECT_EQ(linesOf(run.output), codesOfBoot);
    EXPECT_EQ(held(), 60u);

    const auto document = jsonOf(tool({"post", "list", "--json"}).output);
    EXPECT_EQ(document["object"], receiver);
    EXPECT_EQ(document["codes"][0],
              nlohmann::json({{"code", 1}, {"port", 0x80}, {"flags", 1}, {"time", 250000}}));
    EXPECT_EQ(document["last"], 0xaa);
    EXPECT_EQ(document["status"],
              nlohmann::json(
                  {{"value", 60}, {"flag1", false}, {"flag2", false}, {"flag3", false}, {"flag4", true}}));
}

TEST_F(PostCommand, ClearDropsTheCodes) {
    letPass(4s);
    EXPECT_EQ(tool({"post", "clear"}).exitCode, 0);
    EXPECT_EQ(held(), 0u);
    EXPECT_THAT(tool({"post", "list"}).output, IsEmpty());
}

TEST_F(PostCommand, FollowShowsCodesAsTheyComeUntilTheWantedOne) {
    letPass(1s);
    support::Process process(
        setupOf({"post", "follow", "--until", "aa", "--timeout", "50", "--interval", "0.02"}));
    EXPECT_EQ(process.firstLine(), "     0.250000  01  port 80  flags 01");
    letPass(3s);
    const auto run = process.wait();
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_EQ(linesOf(run.output), codesOfBoot);
    EXPECT_THAT(run.output, EndsWith("  AA  port 80  flags 00\n"));
    EXPECT_EQ(held(), 0u);
    EXPECT_FALSE(simulator.lockHolder());
}

TEST_F(PostCommand, FollowAsJsonShowsEachCodeAsItComes) {
    letPass(1s);
    support::Process process(setupOf({"post", "follow", "--until", "aa", "--interval", "0.02", "--json"}));
    EXPECT_EQ(process.firstLine(), R"({"code": 1, "flags": 1, "port": 128, "time": 250000})");
    letPass(3s);
    const auto run = process.wait();
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_THAT(run.output, EndsWith("{\"code\": 170, \"flags\": 0, \"port\": 128, \"time\": 3000000}\n"));
    EXPECT_EQ(linesOf(run.output), codesOfBoot);
}

TEST_F(PostCommand, FollowTakesAndClearsInOneExchange) {
    letPass(4s);
    EXPECT_EQ(tool({"post", "follow", "--until", "0xAA"}).exitCode, 0);
    const auto gets = callsOf(receiver, "fifoGet");
    const auto clears = callsOf(receiver, "fifoClear");
    ASSERT_EQ(gets.size(), 1u);
    ASSERT_EQ(clears.size(), 1u);
    EXPECT_EQ(gets[0].request, clears[0].request);
}

TEST_F(PostCommand, FollowFailsWhenTheWantedCodeDoesNotComeInTime) {
    letPass(1s);
    const auto run = tool({"post", "follow", "--until", "AA", "--timeout", "0.2", "--json"});
    EXPECT_EQ(run.exitCode, 1);
    const auto codes = documentsOf(run.output);
    ASSERT_FALSE(codes.empty());
    EXPECT_EQ(codes[0]["code"], 1);
    EXPECT_EQ(jsonOf(run.errors)["error"]["message"], "POST code AA did not arrive within 200ms");
}

TEST_F(PostCommand, FollowWithoutWantedCodeEndsWithTheTime) {
    letPass(4s);
    const auto run = tool({"post", "follow", "--timeout", "0", "--json"});
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_EQ(documentsOf(run.output).size(), 60u);
    EXPECT_EQ(linesOf(run.output), 60) << "a document is a line";
}

TEST_F(PostCommand, FollowGivesWhatItTookAlsoWhenASignalEndsIt) {
    letPass(4s);
    support::Process process(setupOf({"post", "follow", "--json"}));
    while (callsOf(receiver, "fifoClear").empty())
        letPass(1us);
    process.signal(SIGTERM);
    const auto run = process.wait();
    EXPECT_EQ(run.signal, SIGTERM);
    EXPECT_EQ(documentsOf(run.output).size(), 60u);
    EXPECT_FALSE(simulator.lockHolder());
}

TEST_F(PostCommand, FollowRefusesWhatIsNoCodeBeforeAnythingIsSent) {
    for (const auto* text : {"100", "XY", "0x", "-1", "A A"})
        EXPECT_EQ(tool({"post", "follow", "--until", text}).exitCode, 2) << text;
    EXPECT_EQ(tool({"post", "follow", "--timeout", "-1"}).exitCode, 2);
    EXPECT_EQ(simulator.connectionCount(), 0u);
}

TEST_F(PostCommand, NeedsAReceiver) {
    const auto run = runTool({"--sim", "--topology", "bare", "post", "list"});
    EXPECT_EQ(run.exitCode, 3);
    EXPECT_EQ(run.errors, "tavo: the device has no POST code receiver\n");
}

} // namespace
} // namespace tool_test
