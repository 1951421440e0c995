#include <algorithm>
#include <csignal>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <tests/simulator/raw_client.h>
#include <tests/support/process.h>

namespace {

using namespace support;

ProcessSetup simulator(std::vector<std::string> arguments) {
    return {TAVO_SIM_PROGRAM, std::move(arguments)};
}

ProcessOutcome outcome(std::vector<std::string> arguments) {
    return runProcess(simulator(std::move(arguments)));
}

std::uint16_t portIn(const std::string& line) {
    const std::string start = "listening on 127.0.0.1:";
    EXPECT_EQ(line.substr(0, start.size()), start);
    return static_cast<std::uint16_t>(std::stoi(line.substr(start.size())));
}

const Bytes methodsOfDevice = requestBytes(0, {callBytes(0, 3)});

TEST(TavoSim, tellsItsPortAndServes) {
    Process process(simulator({"--port", "0"}));
    RawClient client(portIn(process.firstLine()));
    client.send(methodsOfDevice);
    EXPECT_GT(client.receive().size(), 100u);
    process.signal(SIGTERM);
    const auto ended = process.wait();
    EXPECT_EQ(ended.exitCode, 0);
    EXPECT_EQ(ended.errors, "stopped after 1 requests on 1 connections\n");
}

TEST(TavoSim, endsWellOnAnInterrupt) {
    Process process(simulator({"--port", "0", "--quiet"}));
    process.firstLine();
    process.signal(SIGINT);
    const auto ended = process.wait();
    EXPECT_EQ(ended.exitCode, 0);
    EXPECT_EQ(ended.errors, "");
}

TEST(TavoSim, letsRequestsGoWrong) {
    Process process(simulator({"--port", "0", "--fault", "2:cut=5", "--fault", "1:stray=2"}));
    const auto port = portIn(process.firstLine());
    RawClient client(port);
    client.send(methodsOfDevice);
    const auto reply = client.receive();
    EXPECT_EQ(Bytes(reply.end() - 2, reply.end()), Bytes({0xA5, 0xA5}));
    client.send(methodsOfDevice);
    EXPECT_EQ(client.receiveToEnd(), Bytes(5));
}

TEST(TavoSim, logsCallsWithoutPasswords) {
    Process process(simulator({"--port", "0", "--log", "--topology", "bare", "--account", "ann:s3cret"}));
    RawClient client(portIn(process.firstLine()));
    client.send(methodsOfDevice);
    const auto list = client.receive();
    const Bytes name = {0, 0, 0, 4, 'l', 'o', 'c', 'k'};
    const auto found = std::search(list.begin(), list.end(), name.begin(), name.end());
    ASSERT_NE(found, list.end());
    const Bytes id(found + 8, found + 12);
    client.send(joined({u32(0), u32(1), u32(0), id, block(joined({text("ann"), text("s3cret")}))}));
    EXPECT_EQ(client.receive().size(), 12u + 4 + 8);
    process.signal(SIGTERM);
    const auto errors = process.wait().errors;
    EXPECT_NE(errors.find("2 #1 device.lock(user=\"ann\" password=\"***\") = 0\n"), std::string::npos)
        << errors;
    EXPECT_EQ(errors.find("s3cret"), std::string::npos);
}

TEST(TavoSim, listsItsTopologies) {
    const auto listed = outcome({"--list-topologies"});
    EXPECT_EQ(listed.exitCode, 0);
    EXPECT_NE(listed.output.find("standard "), std::string::npos);
    EXPECT_NE(listed.output.find("\nbare "), std::string::npos);
}

TEST(TavoSim, explainsFaultsInItsHelp) {
    const auto help = outcome({"--help"});
    EXPECT_EQ(help.exitCode, 0);
    EXPECT_NE(help.output.find("size=FIELD:BYTES"), std::string::npos);
    EXPECT_EQ(outcome({"--version"}).output, "tavo-sim 2.0.0.0\n");
}

TEST(TavoSim, refusesWrongArgumentsWithStatus2) {
    const std::vector<std::pair<std::vector<std::string>, std::string>> wrong = {
        {{"--nonsense"}, "--nonsense"},
        {{"--port", "65536"}, "--port"},
        {{"--port", "x"}, "--port"},
        {{"--key", "4"}, "--key"},
        {{"--topology", "moon"}, "there is no topology 'moon'"},
        {{"--fault", "3:cut=x"}, "'x' is no number of bytes"},
        {{"--account", "nobody"}, "account 'nobody': expected USER:PASSWORD"},
        {{"--log", "--quiet"}, "--log"},
    };
    for (const auto& [arguments, message] : wrong) {
        const auto refused = outcome(arguments);
        EXPECT_EQ(refused.exitCode, 2) << arguments[0];
        EXPECT_NE(refused.errors.find(message), std::string::npos) << arguments[0] << ": " << refused.errors;
        EXPECT_EQ(refused.output, "") << arguments[0];
    }
}

TEST(TavoSim, endsWithStatus1WhenItCannotListen) {
    Process first(simulator({"--port", "0"}));
    const auto port = std::to_string(portIn(first.firstLine()));
    const auto second = outcome({"--port", port});
    EXPECT_EQ(second.exitCode, 1);
    EXPECT_EQ(second.errors,
              "tavo-sim: Cannot listen on 127.0.0.1 port " + port + ": Address already in use\n");
}

} // namespace
