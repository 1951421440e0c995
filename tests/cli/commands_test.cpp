#include <chrono>
#include <csignal>
#include <cstdint>
#include <fstream>
#include <string>
#include <thread>
#include <variant>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tavo/simulator/objects/relay.h>
#include <tests/cli/tool_fixture.h>

namespace tool_test {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

TEST_F(ToolTest, InfoTellsWhatTheDeviceIs) {
    const auto run = tool({"info"});
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_THAT(run.output, StartsWith("name       tavo-sim\nversion    2.0.0\nport       "));
    EXPECT_THAT(run.output, HasSubstr("key flags  0 0\n"));
    EXPECT_THAT(run.output, HasSubstr("firmware   main 2.4.7\n"));
    EXPECT_THAT(run.output, HasSubstr("board      mainboard | rev C | SIM-0001 | simulated\n"));
    EXPECT_THAT(run.errors, IsEmpty());
}

TEST_F(ToolTest, InfoNeedsNeitherUserNorLock) {
    const auto run = runTool(address() + Words{"info", "--json"});
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    const auto document = jsonOf(run.output);
    EXPECT_EQ(document["name"], "tavo-sim");
    EXPECT_EQ(document["port"], simulator.port());
    EXPECT_EQ(document["keyFlags"], nlohmann::json({false, false}));
    EXPECT_EQ(document["firmware"][0]["name"], "fpga");
    EXPECT_EQ(document["boards"][1]["field3"], "SIM-0002");
    EXPECT_THAT(callsOf("device", "lock"), IsEmpty());
}

TEST(Info, OfADeviceWithAnUnknownKeyShowsEverythingAndSaysSo) {
    TAVO::simulator::Simulator unknown({.topology = "bare", .serverKey = -1});
    unknown.start();
    const Words address{"--host", "127.0.0.1", "--port", std::to_string(unknown.port())};
    const std::string message = "key not among the known ones, see TAVO_SERVER_KEYS_FILE in README.md";
    const auto text = runTool(address + Words{"info"});
    EXPECT_EQ(text.exitCode, 4);
    EXPECT_THAT(text.output, StartsWith("name       tavo-sim\nversion    2.0.0\nport       " +
                                        std::to_string(unknown.port()) + "\nkey        unknown\n"));
    EXPECT_THAT(text.output, HasSubstr("board      mainboard | rev C | SIM-0001 | simulated\n"));
    EXPECT_EQ(text.errors, "tavo: " + message + "\n");

    const auto json = runTool(address + Words{"info", "--json"});
    EXPECT_EQ(json.exitCode, 4);
    EXPECT_EQ(jsonOf(json.output)["keyFlags"], nlohmann::json());
    EXPECT_EQ(jsonOf(json.output)["firmware"][1]["version"], "2.4.7");
    EXPECT_EQ(jsonOf(json.errors)["error"]["message"], message);

    const auto secure = runTool(address + Words{"info", "--secure"});
    EXPECT_EQ(secure.exitCode, 4);
    EXPECT_THAT(secure.output, IsEmpty());
    EXPECT_EQ(unknown.lockHolder(), std::nullopt);
}

TEST_F(ToolTest, TreeShowsTypeVersionAndInstanceIdOfEveryObject) {
    const auto id = simulator.inspect(
        [](auto& appliance) { return std::to_string(appliance.get("bench.lamp").instanceId()); });
    const auto run = tool({"tree"});
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_THAT(run.output, StartsWith("127.0.0.1:" + std::to_string(simulator.port()) +
                                       "\n|-- device  device 1.0  #0\n|-- system  system 1.0  #1\n"));
    EXPECT_THAT(run.output, HasSubstr("|-- bench  rack 3.1.4  #"));
    EXPECT_THAT(run.output, HasSubstr("|   `-- lamp  relay 1.0  #" + id + "\n"));
    EXPECT_THAT(run.output, testing::Not(HasSubstr("get()")));
}

TEST_F(ToolTest, TreeIsDrawnWithLinesWhereTheLocaleHasThem) {
    auto setup = setupOf({"tree"});
    setup.environment["LC_ALL"] = "C.UTF-8";
    EXPECT_THAT(support::runProcess(setup).output,
                HasSubstr("\n\xe2\x94\x9c\xe2\x94\x80\xe2\x94\x80 device  device 1.0  #0\n"));
}

TEST_F(ToolTest, TreeAddsTheMethodsOnRequest) {
    const auto text = tool({"tree", "--methods"}).output;
    EXPECT_THAT(text, HasSubstr("set(state: bool)  method "));
    EXPECT_THAT(text, HasSubstr("get() -> state: u8  method "));
    EXPECT_THAT(text, HasSubstr("identify  (not known to this client)  method "));
    EXPECT_THAT(text, HasSubstr("methods() -> methods: list of {name: text, id: u32}  method 3\n"));
}

TEST_F(ToolTest, TreeAsJsonNestsTheMembers) {
    const auto document = jsonOf(tool({"--json", "tree", "--methods"}).output);
    const auto& bench = document["objects"][3];
    EXPECT_EQ(bench["name"], "bench");
    EXPECT_EQ(bench["type"], "rack");
    EXPECT_EQ(bench["members"][0]["members"][1]["fullName"], "bench.drawer.right");
    bool sawIdentify = false;
    for (const auto& method : bench["methods"])
        if (method["name"] == "identify") {
            sawIdentify = true;
            EXPECT_TRUE(method["signature"].is_null());
        }
    EXPECT_TRUE(sawIdentify);
}

TEST_F(ToolTest, CallShowsReturnCodeAndResultByFieldNames) {
    const auto run = tool({"call", "power.get"});
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_EQ(run.output, "power.get: return code 0\n  state = 0\n");
    EXPECT_THAT(run.errors, IsEmpty());
}

TEST_F(ToolTest, CallReachesNestedAndFixedObjectsAndThoseOfUnknownTypes) {
    EXPECT_EQ(tool({"call", "bench.drawer.left.set", "state=true"}).output,
              "bench.drawer.left.set: return code 0\n");
    EXPECT_TRUE(simulator.inspect([](auto& appliance) {
        return appliance.template get<TAVO::simulator::Relay>("bench.drawer.left").state();
    }));
    EXPECT_EQ(tool({"call", "bench.type"}).output, "bench.type: return code 0\n  type = \"rack\"\n");
    EXPECT_EQ(tool({"call", "private.type"}).output, "private.type: return code 0\n  type = \"private\"\n");
    const auto info = tool({"call", "device.info"}).output;
    EXPECT_THAT(info, HasSubstr("  version = {major=2 minor=0 bugfix=0}\n"));
    EXPECT_THAT(info, HasSubstr("  boards:\n    - field1=\"mainboard\" field2=\"rev C\""));
    EXPECT_EQ(tool({"call", "power.reserve", "first=a b", "flag=0xff", "second="}).exitCode, 0);
    EXPECT_EQ(callsOf("power", "reserve").at(0).parameters.toString(), "flag=255 first=\"a b\" second=\"\"");
}

TEST_F(ToolTest, CallAsJsonIsOneDocument) {
    const auto get = jsonOf(tool({"call", "power.get", "--json"}).output);
    EXPECT_EQ(get,
              nlohmann::json::parse(R"({"method": "power.get", "returnCode": 0, "result": {"state": 0}})"));
    const auto set = jsonOf(tool({"call", "power.set", "state=1", "--json"}).output);
    EXPECT_EQ(set, nlohmann::json::parse(R"({"method": "power.set", "returnCode": 0, "result": null})"));
}

TEST_F(ToolTest, CallTellsWhatIsWrongWithTheFieldsBeforeAnythingIsSent) {
    const auto run = tool({"call", "power.set", "stat=1", "speed=2"});
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_EQ(run.errors,
              "tavo: power.set: there is no field 'stat', there is no field 'speed', field 'state' "
              "is missing; power.set takes state: bool\n");
    EXPECT_EQ(tool({"call", "power.set", "state=1", "state=0"}).errors,
              "tavo: power.set: field 'state' is given twice; power.set takes state: bool\n");
    EXPECT_EQ(tool({"call", "power.get", "state=1"}).errors,
              "tavo: power.get: there is no field 'state'; power.get takes no parameters\n");
    EXPECT_EQ(
        tool({"call", "power.toggle", "value=2147483648"}).errors,
        "tavo: power.toggle: 'value' must be a number from -2147483648 to 2147483647, not '2147483648'; "
        "power.toggle takes value: i32\n");
    EXPECT_THAT(callsOf("power", "set"), IsEmpty());
    EXPECT_THAT(callsOf("power", "toggle"), IsEmpty());
}

TEST_F(ToolTest, BatchMakesAllCallsInOneExchange) {
    const auto run =
        tool({"batch", "-"}, "# switch it on\npower.set state=true\n\n  'power.get'   # look\n"
                             "device.login user=\"engineer\"\r\npower.toggle value=0\npower.get");
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_THAT(run.output,
                StartsWith("2: power.set: return code 0\n4: power.get: return code 0\n  state = 1\n5: "));
    EXPECT_THAT(run.output, HasSubstr("\n7: power.get: return code 0\n  state = 0\n"));
    const auto set = callsOf("power", "set"), get = callsOf("power", "get"),
               toggle = callsOf("power", "toggle");
    ASSERT_EQ(set.size(), 1u);
    ASSERT_EQ(get.size(), 2u);
    EXPECT_EQ(set[0].request, get[1].request);
    EXPECT_EQ(set[0].request, toggle.at(0).request);
}

TEST_F(ToolTest, BatchReadsFilesAndNamesThemInErrors) {
    const auto file = testing::TempDir() + "tool_batch_" + std::to_string(simulator.port());
    std::ofstream(file) << "power.set state=1\npower.get\ncmos.cmosClear value=x\n";
    const auto run = tool({"batch", file});
    std::remove(file.c_str());
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_THAT(run.errors, StartsWith("tavo: " + file + ":3: cmos.cmosClear: 'value' must be a number"));
    EXPECT_THAT(run.output, IsEmpty());
    EXPECT_THAT(callsOf("power", "set"), IsEmpty()) << "all lines are checked before the first call";
}

TEST_F(ToolTest, BatchRefusesBrokenLinesWithoutConnecting) {
    const auto run = tool({"batch", "-"}, "power.get\npower.set 'state=1\n");
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_EQ(run.errors, "tavo: -:2: a quote ' is not closed\n");
    EXPECT_EQ(simulator.connectionCount(), 0u);
    EXPECT_EQ(tool({"batch", "/nowhere/at/all"}).errors,
              "tavo: cannot read '/nowhere/at/all': No such file or directory\n");
}

TEST_F(ToolTest, BatchShowsWhatArrivedBeforeADeviceError) {
    const std::string calls = "power.set state=1\npower.get\ncmos.cmosClear value=60001\npower.set state=0\n";
    const auto run = tool({"batch", "-"}, calls);
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_THAT(run.output,
                StartsWith("1: power.set: return code 0\n2: power.get: return code 0\n  state = 1\n"));
    EXPECT_THAT(run.output, testing::Not(HasSubstr("4: ")));
    EXPECT_EQ(run.errors, "tavo: -:3: Failed to execute cmos.cmosClear: The pulse is longer than a minute\n");

    const auto json = tool({"--json", "batch", "-"}, calls);
    EXPECT_EQ(json.exitCode, 1);
    const auto results = jsonOf(json.output);
    ASSERT_GE(results.size(), 2u);
    EXPECT_EQ(results[1]["line"], 2);
    EXPECT_EQ(results[1]["result"]["state"], 1);
    EXPECT_EQ(jsonOf(json.errors)["error"]["code"], 1);
}

TEST_F(ToolTest, BatchWithARefusedCallShowsAllResultsAndFails) {
    const auto run = tool({"batch", "-"}, "power.toggle value=-1\npower.set state=1\n");
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.output, "1: power.toggle: return code 1: an argument is out of range or malformed\n"
                          "2: power.set: return code 0\n");
    EXPECT_EQ(run.errors,
              "tavo: -:1: power.toggle returned code 1: an argument is out of range or malformed\n");
}

TEST_F(ToolTest, BatchWithoutCallsMakesNone) {
    const auto run = tool({"--json", "batch", "-"}, "# nothing\n");
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(jsonOf(run.output), nlohmann::json::array());
}

TEST_F(ToolTest, RelaysAreListedReadAndSwitched) {
    EXPECT_EQ(tool({"relay", "set", "bench.lamp", "on"}).exitCode, 0);
    EXPECT_EQ(tool({"relay", "get", "bench.lamp"}).output, "on\n");
    EXPECT_EQ(tool({"relay", "list"}).output,
              "bench.drawer.left  off\nbench.drawer.right  off\nbench.fan  off\n"
              "bench.lamp  on\npower  off\n");
    EXPECT_EQ(tool({"relay", "toggle", "bench.lamp"}).exitCode, 0);
    EXPECT_EQ(jsonOf(tool({"relay", "get", "bench.lamp", "--json"}).output),
              nlohmann::json::parse(R"({"name": "bench.lamp", "state": 0, "on": false})"));
    EXPECT_EQ(jsonOf(tool({"relay", "set", "power", "off", "--json"}).output),
              nlohmann::json::parse(R"({"name": "power", "returnCode": 0})"));
    EXPECT_EQ(jsonOf(tool({"relay", "list", "--json"}).output).size(), 5u);
}

TEST_F(ToolTest, RelaysAreFollowedWithALineForEachChange) {
    for (const bool json : {false, true}) {
        auto setup = setupOf({"relay", "list", "--follow", "--interval", "0.01"});
        if (json)
            setup.arguments.emplace_back("--json");
        simulator.clearCalls();
        support::Process process(setup);
        const auto awaitLooks = [this](std::size_t count) {
            const auto deadline = std::chrono::steady_clock::now() + support::processPatience;
            while (callsOf("power", "get").size() < count && std::chrono::steady_clock::now() < deadline)
                std::this_thread::sleep_for(std::chrono::milliseconds(2));
        };
        const auto switchPower = [this](bool on) {
            return simulator.inspect([on](auto& appliance) {
                appliance.template get<TAVO::simulator::Relay>("power").set(on);
                return true;
            });
        };
        awaitLooks(1);
        switchPower(true);
        awaitLooks(callsOf("power", "get").size() + 2);
        switchPower(false);
        awaitLooks(callsOf("power", "get").size() + 2);
        process.signal(SIGINT);
        const auto run = process.wait();
        EXPECT_EQ(run.signal, SIGINT);
        EXPECT_EQ(run.output,
                  json ? "{\"name\": \"bench.drawer.left\", \"on\": false, \"state\": 0}\n"
                         "{\"name\": \"bench.drawer.right\", \"on\": false, \"state\": 0}\n"
                         "{\"name\": \"bench.fan\", \"on\": false, \"state\": 0}\n"
                         "{\"name\": \"bench.lamp\", \"on\": false, \"state\": 0}\n"
                         "{\"name\": \"power\", \"on\": false, \"state\": 0}\n"
                         "{\"name\": \"power\", \"on\": true, \"state\": 1}\n"
                         "{\"name\": \"power\", \"on\": false, \"state\": 0}\n"
                       : "bench.drawer.left  off\nbench.drawer.right  off\nbench.fan  off\nbench.lamp  off\n"
                         "power  off\npower  on\npower  off\n");
        EXPECT_FALSE(simulator.lockHolder());
    }
}

TEST_F(ToolTest, FollowingEndsWithItsTime) {
    const auto run = tool({"relay", "list", "--follow", "--timeout", "0"});
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_EQ(run.output, tool({"relay", "list"}).output);
    EXPECT_EQ(tool({"relay", "list", "--timeout", "1"}).exitCode, 2) << "only with --follow";
}

TEST_F(ToolTest, RelayArgumentsAreChecked) {
    EXPECT_EQ(tool({"relay", "set", "power", "up"}).exitCode, 2);
    EXPECT_EQ(tool({"relay"}).exitCode, 2);
    const auto cmos = tool({"relay", "get", "cmos"});
    EXPECT_EQ(cmos.exitCode, 3);
    EXPECT_EQ(cmos.errors,
              "tavo: 'cmos' is no relay; there are: bench.drawer.left, bench.drawer.right, bench.fan, "
              "bench.lamp, power\n");
    const auto refused = tool({"relay", "toggle", "power", "--", "-5"});
    EXPECT_EQ(refused.exitCode, 1);
    EXPECT_EQ(refused.errors,
              "tavo: power.toggle returned code 1: an argument is out of range or malformed\n");
}

TEST_F(ToolTest, TimeIsSetAndReadAsTheDeviceCounts) {
    EXPECT_EQ(tool({"time", "set", "2024-05-06T07:08:09Z", "--unit", "us"}).output, "1714979289000000\n");
    EXPECT_EQ(callsOf("system", "timeSet").at(0).parameters.toString(), "time=1714979289000000");
    const auto plain = tool({"time", "get"}).output;
    EXPECT_GE(std::stoll(plain), 1714979289000000);
    EXPECT_THAT(tool({"time", "get", "--unit", "us"}).output, HasSubstr("  2024-05-06T07:"));
    EXPECT_EQ(tool({"time", "set", "--", "-7"}).output, "-7\n");
    EXPECT_TRUE(jsonOf(tool({"time", "get", "--json"}).output)["time"].is_number_integer());
}

TEST_F(ToolTest, TimeSetOfAMomentNeedsAUnit) {
    const auto run = tool({"time", "set", "2024-05-06T07:08:09Z"});
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_THAT(run.errors, HasSubstr("--unit"));
    EXPECT_EQ(tool({"time", "set", "never", "--unit", "s"}).exitCode, 2);
    EXPECT_EQ(simulator.connectionCount(), 0u);
}

} // namespace
} // namespace tool_test
