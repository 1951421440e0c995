#include <chrono>
#include <csignal>
#include <cstdint>
#include <map>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tests/cli/tool_fixture.h>

namespace tool_test {
namespace {

namespace faults = TAVO::simulator::faults;
using TAVO::simulator::Appliance;
using TAVO::simulator::Fault;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

/// Both runs, one with text and one with JSON, ended with that failure and told nothing else.
void expectFailure(const support::ProcessOutcome& text, const support::ProcessOutcome& json, int code,
                   const std::string& kind, const std::string& message) {
    EXPECT_EQ(text.exitCode, code);
    EXPECT_THAT(text.errors, StartsWith("tavo: "));
    EXPECT_THAT(text.errors, HasSubstr(message));
    EXPECT_THAT(text.output, IsEmpty());
    EXPECT_EQ(json.exitCode, code);
    const auto error = jsonOf(json.errors)["error"];
    EXPECT_EQ(error["code"], code);
    EXPECT_EQ(error["kind"], kind);
    EXPECT_THAT(error["message"].get<std::string>(), HasSubstr(message));
}

TEST(Tool, HelpNamesTheCommandsAndWhereTheExitCodesAre) {
    const auto run = runTool({"--help"});
    EXPECT_EQ(run.exitCode, 0);
    for (const auto* word : {"info", "tree", "call", "batch", "relay", "time", "firmware", "--password-file",
                             "TAVO_PASSWORD", "tavo help exit-status"})
        EXPECT_THAT(run.output, HasSubstr(word));
    EXPECT_THAT(run.errors, IsEmpty());
    EXPECT_THAT(runTool({"call", "--help"}).output, HasSubstr("OBJECT.METHOD [name=value ...]"));
}

TEST(Tool, HelpIsACommandToo) {
    EXPECT_EQ(runTool({"help"}).output, runTool({"--help"}).output);
    EXPECT_EQ(runTool({"help", "hdt", "trigger"}).output, runTool({"hdt", "trigger", "--help"}).output);
    const auto status = runTool({"help", "exit-status"});
    EXPECT_THAT(status.output, StartsWith("Exit status:\n  0  done\n  1  "));
    EXPECT_THAT(status.output, HasSubstr("\n  9  "));
    const auto unknown = runTool({"help", "relay", "st"});
    EXPECT_EQ(unknown.exitCode, 2);
    EXPECT_EQ(unknown.errors, "tavo: there is no command 'relay st'; did you mean 'relay set'?\n");
}

TEST(Tool, VersionIsThatOfTheLibrary) { EXPECT_EQ(runTool({"--version"}).output, "tavo 2.0.0\n"); }

TEST(Tool, WrongArgumentsAreUsageErrors) {
    for (const auto& arguments : std::vector<Words>{{},
                                                    {"info"},
                                                    {"--sim"},
                                                    {"--sim", "frobnicate"},
                                                    {"--sim", "--frobnicate", "info"},
                                                    {"--sim", "info", "more"},
                                                    {"--sim", "--host", "a", "info"},
                                                    {"--host", "a", "--port", "0", "info"},
                                                    {"--host", "a", "--port", "65536", "info"},
                                                    {"--host", "a", "--topology", "bare", "info"},
                                                    {"--sim", "--topology", "nowhere", "info"},
                                                    {"--host", "127.0.0.1", "tree"},
                                                    {"--sim", "call"},
                                                    {"--sim", "call", "power"}}) {
        const auto run = runTool(arguments);
        EXPECT_EQ(run.exitCode, 2) << testing::PrintToString(arguments);
        EXPECT_THAT(run.errors, StartsWith("tavo: "));
        EXPECT_THAT(run.output, IsEmpty());
        const auto json = runTool(Words{"--json"} + arguments);
        EXPECT_EQ(json.exitCode, 2);
        EXPECT_EQ(jsonOf(json.errors)["error"]["kind"], "usage") << testing::PrintToString(arguments);
    }
}

TEST(Tool, TakesJsonBehindTwoDashesForAnArgument) {
    const auto text = runTool({"--sim", "relay", "get", "--", "--json"});
    EXPECT_EQ(text.exitCode, 3);
    EXPECT_THAT(text.errors, StartsWith("tavo: no object '--json'; there are: "));
    EXPECT_EQ(runTool({"--sim", "lcd", "print", "--", "--json"}).output, "");
    EXPECT_THAT(runTool({"--sim", "frobnicate", "--", "--json"}).errors, StartsWith("tavo: "));
    const auto json = runTool({"--sim", "--json", "relay", "get", "--", "--json"});
    EXPECT_EQ(jsonOf(json.errors)["error"]["code"], 3);
}

TEST(Tool, TakesJsonAsTheValueOfAnOption) {
    const auto run = runTool({"--sim", "--user", "--json", "relay", "get", "nope"});
    EXPECT_THAT(run.errors, StartsWith("tavo: "));
}

TEST(Tool, BringsASimulatedDeviceOfItsOwn) {
    EXPECT_EQ(runTool({"--sim", "relay", "get", "power"}).output, "off\n");
    EXPECT_EQ(runTool({"relay", "--sim", "get", "power", "--secure", "--user", "guest"}).output, "off\n");
    EXPECT_EQ(jsonOf(runTool({"tree", "--sim", "--topology", "bare", "--json"}).output)["objects"].size(),
              3u);
}

TEST_F(ToolTest, RefusedByTheDeviceIsOne) {
    expectFailure(tool({"relay", "toggle", "power", "--", "-1"}),
                  tool({"--json", "relay", "toggle", "power", "--", "-1"}), 1, "refused",
                  "power.toggle returned code 1");
    expectFailure(tool({"call", "cmos.cmosClear", "value=60001"}),
                  tool({"--json", "call", "cmos.cmosClear", "value=60001"}), 1, "refused",
                  "Failed to execute cmos.cmosClear: The pulse is longer than a minute");
}

TEST_F(ToolTest, EveryErrorThatTheDeviceReportsInACallIsOneUnlessItIsAboutTheUser) {
    const auto ahead = requestsUntil("power", "get", {"call", "power.get"});
    struct Expected {
        std::uint32_t error;
        int exitCode;
    };
    for (const auto [error, exitCode] : {Expected{1000, 1},
                                         {1001, 4},
                                         {1002, 1},
                                         {1003, 1},
                                         {1004, 1},
                                         {1005, 1},
                                         {1006, 1},
                                         {1007, 1},
                                         {1013, 4}}) {
        simulator.failNext(faults::DeviceError{error, 0, "because"}, ahead);
        const auto run = tool({"call", "power.get"});
        EXPECT_EQ(run.exitCode, exitCode) << error;
        EXPECT_THAT(run.errors, HasSubstr("because"));
        EXPECT_THAT(run.output, IsEmpty());
        EXPECT_FALSE(simulator.lockHolder()) << "the lock is released after an error";
    }
}

TEST_F(ToolTest, JsonErrorsTellWhatTheLibraryKnows) {
    const auto factsOf = [this](const Words& arguments) {
        auto words = arguments;
        words.insert(words.begin(), "--json");
        return jsonOf(tool(words).errors)["error"]["facts"];
    };
    const Words get{"call", "power.get"};
    simulator.failNext(faults::DeviceError{1006, 0, "because"}, requestsUntil("power", "get", get));
    EXPECT_EQ(factsOf(get), jsonOf(R"({"connectionUsable": true, "deviceErrorCode": 1006,
                                       "method": "power.get", "origin": "device"})"));
    simulator.failNext(faults::Size{faults::Size::Field::result, 2}, requestsUntil("power", "get", get));
    const auto short_ = factsOf(get);
    EXPECT_EQ(short_["origin"], "library");
    EXPECT_EQ(short_["method"], "power.get");
    EXPECT_EQ(
        factsOf({"call", "power.toggle", "value=-1"}),
        jsonOf(R"({"connectionUsable": true, "method": "power.toggle", "origin": "device", "returnCode": 1,
                         "returnCodeMeaning": "an argument is out of range or malformed"})"));
    EXPECT_EQ(factsOf({"call", "power.frob"}), nlohmann::json()) << "the tool's own failures have none";
    simulator.stop();
    EXPECT_EQ(factsOf(get), jsonOf(R"({"connectionUsable": false, "origin": "connection"})"));
}

TEST_F(ToolTest, ReturnCodesAreShownWithTheResult) {
    simulator.failNext(faults::ReturnCode{-7, 0}, requestsUntil("power", "get", {"call", "power.get"}));
    const auto run = tool({"call", "power.get"});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.output, "power.get: return code -7\n  state = 0\n");
    EXPECT_EQ(run.errors, "tavo: power.get returned code -7\n");
}

TEST_F(ToolTest, ReturnCodesOfTheSimulatedModulesAreShownWithTheirMeaning) {
    const auto ahead = requestsUntil("power", "get", {"call", "power.get"});
    for (const auto& [code, meaning] : std::map<int, std::string>{
             {1, "an argument is out of range or malformed"},
             {2, "the compared bits differ"},
             {3, "the function is switched off"},
             {4, "nobody acknowledged"},
             {5, "it took too long"},
             {6, "the board has no power, or the port is not open"},
             {7, "busy: another user has reserved the object, or an update is still running"}}) {
        const auto number = std::to_string(code);
        simulator.failNext(faults::ReturnCode{code, 0}, ahead);
        const auto text = tool({"call", "power.get"});
        EXPECT_EQ(text.output, "power.get: return code " + number + ": " + meaning + "\n  state = 0\n");
        EXPECT_EQ(text.errors, "tavo: power.get returned code " + number + ": " + meaning + "\n");
        simulator.failNext(faults::ReturnCode{code, 0}, ahead);
        const auto json = tool({"--json", "call", "power.get"});
        EXPECT_EQ(jsonOf(json.output)["returnCodeMeaning"], meaning);
        EXPECT_EQ(jsonOf(json.errors)["error"]["facts"]["returnCodeMeaning"], meaning);
        EXPECT_EQ(jsonOf(json.errors)["error"]["facts"]["returnCode"], code);
    }
}

TEST_F(ToolTest, UnknownObjectsAndMethodsAreThree) {
    expectFailure(tool({"call", "pwer.get"}), tool({"--json", "call", "pwer.get"}), 3, "not-found",
                  "no object 'pwer'; there are: device, system, private, bench, ");
    expectFailure(tool({"call", "power.frob"}), tool({"--json", "call", "power.frob"}), 3, "not-found",
                  "power has no method 'frob'; it has: type, version, ");
    expectFailure(tool({"call", "bench.identify"}), tool({"--json", "call", "bench.identify"}), 3,
                  "not-found", "the parameters of bench.identify are not known to this client");
    EXPECT_EQ(tool({"batch", "-"}, "power.get\npwer.get\n").exitCode, 3);
    EXPECT_EQ(tool({"relay", "get", "pwer"}).exitCode, 3);
}

TEST(Tool, ListsMethodsThatSeveralTypesShareOnceAndInOrder) {
    const auto run = runTool({"--sim", "call", "cpu0.jtag.frob"});
    EXPECT_EQ(run.exitCode, 3);
    EXPECT_THAT(run.errors, HasSubstr("it has: type, version, members, methods, methodsVerbose, available, "
                                      "reserve, unreserve, headerStatusGet, headerStatusClear, enableGet, "
                                      "enableSet, shiftIR, shiftDR, tapStateGet, tapStateSet, "));
    EXPECT_EQ(run.errors.find("shiftIR"), run.errors.rfind("shiftIR"));
}

TEST_F(ToolTest, LockedByAnotherUserIsFour) {
    simulator.inspect([](auto& appliance) { return appliance.lock().take("guest", "tavo"); });
    expectFailure(tool({"tree"}), tool({"--json", "tree"}), 4, "not-authorised",
                  "The device is locked by guest");
    EXPECT_EQ(tool({"info"}).exitCode, 0) << "looking needs no lock";
}

TEST_F(ToolTest, WrongPasswordAndUnknownKeyAreFour) {
    auto setup = setupOf({"tree"});
    setup.environment["TAVO_PASSWORD"] = "wrong";
    EXPECT_EQ(support::runProcess(setup).exitCode, 4);
    simulator.inspect([](auto& appliance) { appliance.setKey({1, 2, 3}); });
    expectFailure(tool({"info", "--secure"}), tool({"info", "--secure", "--json"}), 4, "not-authorised",
                  "Target is not a recognized TAVO server!");
    EXPECT_EQ(tool({"tree", "--secure"}).exitCode, 4);
    EXPECT_EQ(tool({"tree"}).exitCode, 0) << "without --secure nobody asks for the key";
}

TEST_F(ToolTest, NoConnectionAndABrokenOneAreFive) {
    simulator.stop();
    expectFailure(tool({"info"}), tool({"info", "--json"}), 5, "network", "Could not connect to socket");
    simulator.start();
    for (const auto& fault : std::vector<Fault>{faults::Cut{5}, faults::Close{}, faults::Reset{}}) {
        simulator.failNext(fault, 3);
        EXPECT_EQ(tool({"tree"}).exitCode, 5);
    }
}

TEST_F(ToolTest, AnswersThatMakeNoSenseAreNine) {
    simulator.failNext(faults::Count{7});
    const auto text = tool({"info"});
    simulator.failNext(faults::Count{7});
    expectFailure(text, tool({"info", "--json"}), 9, "protocol",
                  "received result count of 7 expected count of 1");
    simulator.failNext(faults::Size{faults::Size::Field::result, 2},
                       requestsUntil("power", "get", {"call", "power.get"}));
    const auto run = tool({"call", "power.get"});
    EXPECT_EQ(run.exitCode, 9) << run.errors;
    EXPECT_THAT(run.errors, HasSubstr("Error decoding TAVOX return values in call to power.get"));
}

TEST(Tool, AnObjectVersionThatTheLibraryRefusesIsNine) {
    const auto run = runTool({"--sim", "--topology", "broken-versions", "tree"});
    EXPECT_EQ(run.exitCode, 9);
    EXPECT_THAT(run.errors, HasSubstr("Unknown lpc object version: 1.1"));
}

TEST_F(ToolTest, OpensOnlyWhatACommandNeedsInFewExchanges) {
    const auto exchangesOf = [this](const Words& words) {
        const auto before = simulator.requestCount();
        EXPECT_EQ(tool(words).exitCode, 0);
        return simulator.requestCount() - before;
    };
    EXPECT_EQ(exchangesOf({"relay", "get", "power"}), 9u);
    // The whole tree has more levels.
    EXPECT_LE(exchangesOf({"relay", "list"}), 14u);
}

TEST_F(ToolTest, ReleasesTheLockAtTheEnd) {
    EXPECT_EQ(tool({"tree"}).exitCode, 0);
    EXPECT_EQ(callsOf("device", "unlock").size(), 1u);
    EXPECT_EQ(tool({"call", "power.frob"}).exitCode, 3);
    EXPECT_EQ(callsOf("device", "unlock").size(), 2u);
    EXPECT_FALSE(simulator.lockHolder());
}

TEST_F(ToolTest, NeverSucceedsWhenTheOutputCannotBeWritten) {
    for (const auto& arguments : std::vector<Words>{{"info"}, {"tree"}, {"call", "power.get", "--json"}}) {
        auto full = setupOf(arguments);
        full.outputFile = "/dev/full";
        const auto run = support::runProcess(full);
        EXPECT_EQ(run.exitCode, 9);
        EXPECT_THAT(run.errors, HasSubstr("cannot write to standard output: No space left on device"));

        auto closed = setupOf(arguments);
        closed.withoutOutput = true;
        EXPECT_EQ(support::runProcess(closed).exitCode, 9);

        auto unread = setupOf(arguments);
        unread.outputUnread = true;
        const auto quiet = support::runProcess(unread);
        EXPECT_EQ(quiet.signal, SIGPIPE) << "as other tools end when head has enough";
        EXPECT_THAT(quiet.errors, IsEmpty());
    }
    auto help = toolWith({"--help"});
    help.outputFile = "/dev/full";
    EXPECT_EQ(support::runProcess(help).exitCode, 9);
    EXPECT_FALSE(simulator.lockHolder());
}

/// The tool's run by a shell, for what a shell does with its streams.
support::ProcessOutcome inShell(const support::ProcessSetup& tool, const std::string& before,
                                const std::string& after) {
    auto setup = tool;
    setup.program = "/bin/sh";
    setup.arguments = {"-c", before + " \"$0\" \"$@\" " + after, tool.program};
    setup.arguments.insert(setup.arguments.end(), tool.arguments.begin(), tool.arguments.end());
    return support::runProcess(setup);
}

TEST_F(ToolTest, ResultsStandBeforeTheErrorInOneLog) {
    simulator.failNext(faults::ReturnCode{-7, 0}, requestsUntil("power", "get", {"call", "power.get"}));
    EXPECT_EQ(inShell(setupOf({"call", "power.get"}), "", "2>&1").output,
              "power.get: return code -7\n  state = 0\ntavo: power.get returned code -7\n");
}

TEST_F(ToolTest, AClosedPipeIsAFailureWhereItsSignalIsIgnored) {
    const auto run = inShell(setupOf({"tree"}), "trap '' PIPE; { sleep 0.3;", "; echo $? >&2; } | true");
    EXPECT_THAT(run.errors, HasSubstr("cannot write to standard output: Broken pipe\n9\n"));
}

TEST_F(ToolTest, KeyThatIsNotKnownIsToldWithTheFileOfThoseThatAre) {
    simulator.inspect([](auto& appliance) { appliance.setKey({1, 2, 3}); });
    for (const auto& arguments : {Words{"--secure", "info"}, Words{"--secure", "tree"}})
        EXPECT_THAT(
            tool(arguments).errors,
            testing::ContainsRegex("\\(this build knows the keys of .*[.]txt; to know others, build with "
                                   "-D TAVO_SERVER_KEYS_FILE=[.]{3}\\)\n"));
}

TEST_F(ToolTest, AnObjectOfAnotherKindIsToldWithThoseThatFit) {
    EXPECT_EQ(tool({"relay", "get", "bench"}).errors,
              "tavo: 'bench' is no relay; there are: bench.drawer.left, bench.drawer.right, bench.fan, "
              "bench.lamp, power\n");
    EXPECT_EQ(tool({"relay", "get", ""}).exitCode, 3);
    EXPECT_EQ(tool({"rom", "save", "/dev/null", "--object", "power"}).errors,
              "tavo: 'power' is no ROM emulation; the device has none\n");
    EXPECT_FALSE(simulator.lockHolder());
}

TEST_F(ToolTest, ASignalDuringAWaitReleasesTheLockAndEndsTheProcess) {
    simulator.inspect([](Appliance& appliance) {
        appliance.clock().freeze();
        appliance.firmware().update("main", {1}, appliance.clock().elapsed());
    });
    support::Process process(setupOf({"firmware", "status", "main", "--wait", "--settle", "50"}));
    const auto deadline = std::chrono::steady_clock::now() + support::processPatience;
    while (callsOf("system", "firmwareStatus").size() < 2 && std::chrono::steady_clock::now() < deadline)
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    process.signal(SIGINT);
    const auto run = process.wait();
    EXPECT_EQ(run.signal, SIGINT);
    EXPECT_THAT(run.output, IsEmpty());
    EXPECT_FALSE(simulator.lockHolder());
}

} // namespace
} // namespace tool_test
