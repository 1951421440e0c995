#include <algorithm>
#include <cctype>
#include <chrono>
#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tavo/simulator/models/eeprom.h>
#include <tavo/simulator/objects/i2c.h>
#include <tests/cli/tool_fixture.h>

namespace tool_test {
namespace {

using namespace TAVO::simulator;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

class I2cCommand : public SimulatedTool {
protected:
    I2cCommand() {
        simulator.inspect([](Appliance& appliance) { appliance.get<Relay>("power").set(true); });
    }

    support::ProcessOutcome i2c(const Words& arguments) const {
        return tool(Words{"i2c", "--object", "i2c"} + arguments);
    }
    I2cBus::Options options() {
        return simulator.inspect(
            [](Appliance& appliance) { return appliance.get<I2c>("i2c").bus().options(); });
    }
    std::vector<std::uint8_t> content(std::uint8_t address) {
        return simulator.inspect([address](Appliance& appliance) {
            return appliance.get<I2c>("i2c").bus().at<Eeprom>(address).content();
        });
    }
    std::size_t exchangesWith(std::string_view method) const {
        std::set<std::uint64_t> requests;
        for (const auto& call : callsOf("i2c", method))
            requests.insert(call.request);
        return requests.size();
    }
};

TEST_F(I2cCommand, DetectFindsTheDevicesInOneExchangeWithoutWriting) {
    const auto run = i2c({"detect"});
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_THAT(run.output, HasSubstr("\n40: -- -- -- -- -- -- -- -- 48 -- -- -- -- -- -- -- \n"
                                      "50: 50 -- -- -- 54 -- -- -- -- -- -- -- -- -- -- -- \n"));
    EXPECT_EQ(callsOf("i2c", "read").size(), 0x70u);
    EXPECT_EQ(exchangesWith("read"), 1u);
    EXPECT_THAT(callsOf("i2c", "write"), IsEmpty());
}

TEST_F(I2cCommand, DetectLooksAtTheAddressesThatAreGiven) {
    const auto document = jsonOf(i2c({"detect", "0x49", "84", "--json"}).output);
    EXPECT_EQ(document["object"], "i2c");
    EXPECT_EQ(document["first"], 0x49);
    EXPECT_EQ(document["last"], 84);
    EXPECT_EQ(document["found"], nlohmann::json({0x50, 0x54}));
    for (const auto& wrong : {Words{"0x49"}, Words{"5", "4"}, Words{"0", "0x80"}, Words{"x", "y"}})
        EXPECT_EQ(i2c(Words{"detect"} + wrong).exitCode, 2);
}

TEST_F(I2cCommand, DetectFailsWhenTheBusItselfDoes) {
    simulator.failNext(faults::ReturnCode{6},
                       requestsUntil("i2c", "read", {"i2c", "--object", "i2c", "detect", "3", "3"}));
    const auto run = i2c({"detect", "3", "3"});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_THAT(run.output, IsEmpty());
    EXPECT_THAT(run.errors, HasSubstr("i2c.read returned code 6"));
}

TEST_F(I2cCommand, WithoutAnObjectNeedsADeviceWithOneBus) {
    const auto run = tool({"i2c", "detect"});
    EXPECT_EQ(run.exitCode, 3);
    EXPECT_THAT(run.errors, HasSubstr("gpu0.i2c"));
    EXPECT_EQ(tool({"i2c", "--object", "power", "detect"}).exitCode, 3);
    EXPECT_EQ(runTool({"--sim", "--topology", "legacy", "i2c", "detect"}).exitCode, 0);
}

TEST_F(I2cCommand, DumpShowsAllRegistersInOneExchange) {
    const auto run = i2c({"dump", "0x50"});
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_THAT(run.output, HasSubstr("\n00: 92 11 0b 02 03 19 00 01 03 11 01 08 0c 00 3c 00    ????"));
    EXPECT_THAT(run.output,
                HasSubstr("\n80: 53 49 4d 2d 32 30 34 38 2d 31 33 33 33 2d 55 20    SIM-2048-1333-U \n"));
    EXPECT_EQ(std::count(run.output.begin(), run.output.end(), '\n'), 17);
    EXPECT_EQ(exchangesWith("transfer"), 1u);
}

TEST_F(I2cCommand, DumpTakesARangeAndWideRegisterNumbers) {
    simulator.inspect([](Appliance& appliance) {
        std::vector<std::uint8_t> bytes(0x1236, 0);
        bytes[0x1234] = 0x68;
        bytes[0x1235] = 0x69;
        appliance.get<I2c>("i2c").bus().at<Eeprom>(0x54).setContent(bytes);
    });
    const auto run = i2c({"dump", "0x54", "--word-address", "--range", "0x1234-0x1236"});
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_THAT(run.output,
                HasSubstr("\n1230:             68 69 ff                                   hi.         \n"));

    const auto whole = jsonOf(i2c({"--json", "dump", "0x54", "--word-address"}).output);
    EXPECT_EQ(whole["values"].size(), 65536u);
    EXPECT_EQ(whole["values"][0x1235], 0x69);
    EXPECT_LE(exchangesWith("transfer"), 5u);
}

TEST_F(I2cCommand, DumpOfAnAbsentDeviceFails) {
    const auto run = i2c({"dump", "0x51"});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_THAT(run.output, IsEmpty());
    EXPECT_EQ(run.errors, "tavo: i2c: address 0x51 does not acknowledge\n");
}

TEST_F(I2cCommand, GetReadsRegisters) {
    EXPECT_EQ(i2c({"get", "0x50", "0x80"}).output, "0x53\n");
    EXPECT_EQ(i2c({"get", "80", "128", "3"}).output, "0x53 0x49 0x4d\n");
    EXPECT_EQ(i2c({"get", "0x50"}).output, "0x2d\n"); // behind the three that were read
    const auto document = jsonOf(i2c({"get", "0x50", "0", "2", "--json"}).output);
    EXPECT_EQ(document,
              nlohmann::json({{"object", "i2c"}, {"address", 0x50}, {"first", 0}, {"values", {0x92, 0x11}}}));
    EXPECT_EQ(i2c({"get", "0x51", "0"}).exitCode, 1);
    for (const auto& wrong : {Words{"0x80", "0"}, Words{"0x50", "0x100"}, Words{"0x50", "0xff", "2"},
                              Words{"0x50", "0", "0"}, Words{}})
        EXPECT_EQ(i2c(Words{"get"} + wrong).exitCode, 2);
}

TEST_F(I2cCommand, SetWritesPageByPageAndWaitsForEachInOneExchange) {
    Words values;
    std::vector<std::uint8_t> written;
    for (std::uint8_t i = 0; i < 20; ++i) {
        values.push_back(std::to_string(i + 100));
        written.push_back(static_cast<std::uint8_t>(i + 100));
    }
    const auto run = i2c(Words{"set", "0x50", "0xb5"} + values + Words{"--verify", "-y"});
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_THAT(run.output, IsEmpty());
    const auto bytes = content(0x50);
    EXPECT_EQ(std::vector(bytes.begin() + 0xb5, bytes.begin() + 0xb5 + 20), written);
    EXPECT_EQ(callsOf("i2c", "write").size(), 4u); // 3 registers to the page's end, 8, 8, 1
    EXPECT_EQ(exchangesWith("write"), 1u);
    EXPECT_EQ(options().addressRetryLimit, 0);
}

TEST_F(I2cCommand, SetWritesDevicesWithWideRegisterNumbers) {
    const auto run = i2c({"set", "0x54", "0x01fe", "1", "0x02", "3", "--word-address", "--yes", "--json"});
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_EQ(jsonOf(run.output), nlohmann::json({{"object", "i2c"},
                                                  {"address", 0x54},
                                                  {"first", 0x1fe},
                                                  {"values", {1, 2, 3}},
                                                  {"verified", false}}));
    const auto bytes = content(0x54);
    EXPECT_THAT(std::vector(bytes.begin() + 0x1fd, bytes.begin() + 0x202), ElementsAre(0xff, 1, 2, 3, 0xff));
    EXPECT_EQ(i2c({"get", "0x54", "0x1fe", "3", "--word-address"}).output, "0x01 0x02 0x03\n");
}

TEST_F(I2cCommand, SetRestoresTheRetryLimitWhenTheDeviceIsAbsent) {
    simulator.inspect(
        [](Appliance& appliance) { appliance.get<I2c>("i2c").bus().setOptions({.addressRetryLimit = 7}); });
    const auto run = i2c({"set", "0x51", "0", "1", "-y"});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.errors, "tavo: i2c: address 0x51 does not acknowledge\n");
    EXPECT_EQ(options().addressRetryLimit, 7);
}

TEST_F(I2cCommand, SetTellsTheFirstRegisterThatReadsBackOtherwise) {
    // The sensor's first register takes no writes.
    const auto run = i2c({"set", "0x48", "0", "0x7f", "--verify", "-y"});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_THAT(run.errors, StartsWith("tavo: register 0x00 reads back 0x"));
}

TEST_F(I2cCommand, SetWithoutTerminalAndConsentSendsNothing) {
    const auto run = i2c({"set", "0x54", "0", "1"});
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_EQ(run.errors, "tavo: --yes is required: there is no terminal to ask at\n");
    EXPECT_EQ(simulator.connectionCount(), 0u);
    for (const auto& wrong : {Words{"0x100"}, Words{"-1"}, Words{"x"}})
        EXPECT_EQ(i2c(Words{"set", "0x54", "0", "-y"} + wrong).exitCode, 2);
    EXPECT_EQ(i2c({"set", "0x50", "0xff", "1", "2", "-y"}).exitCode, 2);
    EXPECT_THAT(callsOf("i2c", "write"), IsEmpty());
}

TEST_F(I2cCommand, SetAsksAtTheTerminal) {
    for (const auto* answer : {"y\n", "Y\n", "yes\n", "Yes\n", "YES\n", "n\n", "yep\n", "\n", "\x04"}) {
        support::PseudoTerminal terminal;
        auto setup = setupOf({"i2c", "--object", "i2c", "set", "0x50", "0xff", "0x5a"});
        setup.terminal = terminal.name();
        terminal.type(answer);
        const auto run = support::runProcess(setup);
        EXPECT_THAT(run.errors,
                    StartsWith("Write 1 bytes to I2C address 0x50 from register 0xff on? [y/N] "));
        const bool yes = std::tolower(*answer) == 'y' && std::string(answer) != "yep\n";
        EXPECT_EQ(run.exitCode, yes ? 0 : 2) << answer;
        EXPECT_EQ(callsOf("i2c", "write").size(), yes ? 1u : 0u);
        simulator.clearCalls();
    }
    EXPECT_EQ(content(0x50)[0xff], 0x5a);
}

TEST_F(I2cCommand, GetAndSetTakeRegistersOfSixteenBits) {
    EXPECT_EQ(i2c({"set", "0x54", "0x10", "0x1234", "7", "--word", "--word-address", "-y"}).exitCode, 0);
    EXPECT_EQ(callsOf("i2c", "write").at(0).parameters.find("data")->toString(), "001034120700");
    EXPECT_EQ(i2c({"get", "0x54", "0x10", "2", "--word", "--word-address"}).output, "0x1234 0x0007\n");
    const auto document = jsonOf(i2c({"get", "0x54", "0x10", "--word", "--word-address", "--json"}).output);
    EXPECT_EQ(document["values"], nlohmann::json({0x1234}));
    const auto wide = i2c({"set", "0x54", "0", "256", "--word-address", "-y"});
    EXPECT_EQ(wide.exitCode, 2);
    EXPECT_THAT(wide.errors, HasSubstr("0x100 exceeds 0xff (--word"));
}

TEST_F(I2cCommand, SetWithoutValuesWritesTheRegisterNumberAlone) {
    EXPECT_EQ(i2c({"set", "0x50", "0x80", "-y"}).exitCode, 0);
    EXPECT_EQ(callsOf("i2c", "write").at(0).parameters.find("data")->toString(), "80");
    EXPECT_EQ(i2c({"get", "0x50"}).output, "0x53\n") << "what is read next stands there";
    EXPECT_EQ(i2c({"set", "0x51", "0x80", "-y"}).exitCode, 1);
    EXPECT_EQ(i2c({"set", "0x50", "0x80"}).exitCode, 2) << "it asks";
}

TEST_F(I2cCommand, TransferWritesAndReadsInOneCall) {
    const auto run = i2c({"transfer", "w1@0x50", "0x80", "r4", "-y"});
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_EQ(run.output, "0x53 0x49 0x4d 0x2d\n");
    EXPECT_EQ(callsOf("i2c", "transfer").size(), 1u);
    EXPECT_EQ(jsonOf(i2c({"transfer", "w1@0x50", "0x80", "r2", "-y", "--json"}).output),
              nlohmann::json::parse(R"({"object": "i2c", "messages": [
                  {"address": 80, "written": 1}, {"address": 80, "read": [83, 73]}]})"));
}

TEST_F(I2cCommand, TransferPutsAStopBehindTheLastMessageOnly) {
    const auto run =
        i2c({"transfer", "w4@0x54", "0", "0", "0xa0+", "w1@0x50", "0x81", "r1", "r1@0x54", "-y"});
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_THAT(run.output, StartsWith("0x49\n0x"));
    const auto writes = callsOf("i2c", "write");
    ASSERT_EQ(writes.size(), 2u);
    EXPECT_THAT(writes[0].toString(), HasSubstr("first=true second=false"));
    EXPECT_EQ(writes[0].parameters.find("data")->toString(), "0000a0a1");
    EXPECT_THAT(callsOf("i2c", "read").at(1).toString(), HasSubstr("first=true second=true"));
}

TEST_F(I2cCommand, TransferWritesNothingBehindAMessageThatIsNotAcknowledged) {
    const auto run = i2c({"transfer", "w2@0x51", "0", "1", "w2@0x50", "0", "1", "-y"});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.errors, "tavo: i2c: message 1, to address 0x51, was not acknowledged\n");
    EXPECT_EQ(callsOf("i2c", "write").size(), 1u);
}

TEST_F(I2cCommand, TransferGivesTheBusBackAfterAFailure) {
    simulator.failNext(faults::ReturnCode{5}, requestsUntil("i2c", "read",
                                                            {"i2c", "--object", "i2c", "transfer", "w1@0x50",
                                                             "0", "r1@0x54", "-y"}));
    simulator.clearCalls();
    EXPECT_EQ(i2c({"transfer", "w1@0x50", "0", "r1@0x54", "-y"}).exitCode, 1);
    const auto writes = callsOf("i2c", "write");
    ASSERT_EQ(writes.size(), 2u);
    EXPECT_THAT(writes[1].toString(), HasSubstr("first=false second=true"));
}

TEST_F(I2cCommand, TransferAsksBeforeItWritesAndChecksItsWords) {
    EXPECT_EQ(i2c({"transfer", "r1@0x50"}).exitCode, 0) << "to read needs no consent";
    const auto connections = simulator.connectionCount();
    EXPECT_THAT(i2c({"transfer", "w1@0x50", "0", "r1"}).errors, HasSubstr("--yes is required"));
    EXPECT_THAT(i2c({"transfer", "r1"}).errors, HasSubstr("'r1' has no address"));
    EXPECT_THAT(i2c({"transfer", "x1@0x50"}).errors, HasSubstr("'x1@0x50' begins no message"));
    EXPECT_THAT(i2c({"transfer", "w2@0x50", "1"}).errors, HasSubstr("'w2@0x50' is followed by 1 of 2 bytes"));
    EXPECT_THAT(i2c({"transfer", "w1@0x50", "256"}).errors,
                HasSubstr("'256': byte: Value 256 not in range 0 to 255"));
    EXPECT_THAT(i2c({"transfer", "r1@0x80"}).errors,
                HasSubstr("'r1@0x80': address: Value 0x80 not in range 0 to 127"));
    EXPECT_EQ(simulator.connectionCount(), connections);
}

} // namespace
} // namespace tool_test
