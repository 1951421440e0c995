#include <csignal>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tavo/client/device/core_objects.h>
#include <tavo/client/device/device_factory.h>
#include <tests/cli/tool_fixture.h>

namespace tool_test {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

/// Tool and simulated device as two programs, and nothing but TCP between them.
class TwoPrograms : public testing::Test {
protected:
    TwoPrograms()
        : device_({.program = TAVO_SIM_PROGRAM, .arguments = {"--port", "0"}}) {
        const auto line = device_.firstLine();
        port_ = line.substr(line.rfind(':') + 1);
    }

    support::ProcessSetup setup(const std::string& user, const Words& arguments) const {
        auto made = toolWith(Words{"--host", "127.0.0.1", "--port", port_, "--user", user} + arguments);
        made.environment["TAVO_PASSWORD"] = "tavo";
        return made;
    }
    support::ProcessOutcome tool(const Words& arguments, const std::string& input = "") const {
        auto made = setup("engineer", arguments);
        made.input = input;
        return support::runProcess(made);
    }

    support::Process device_;
    std::string port_;
};

TEST_F(TwoPrograms, WorkTogetherUntilTheDeviceIsSwitchedOff) {
    EXPECT_THAT(tool({"--secure", "info"}).output, StartsWith("name       tavo-sim\n"));
    EXPECT_EQ(jsonOf(tool({"tree", "--json"}).output)["address"], "127.0.0.1:" + port_);
    EXPECT_EQ(tool({"batch", "-"}, "power.set state=true\npower.get\n").output,
              "1: power.set: return code 0\n2: power.get: return code 0\n  state = 1\n");
    EXPECT_EQ(tool({"relay", "get", "power"}).output, "on\n") << "the device keeps its state";
    EXPECT_EQ(tool({"call", "power.frob"}).exitCode, 3);

    device_.signal(SIGTERM);
    EXPECT_EQ(device_.wait().exitCode, 0);
    EXPECT_EQ(tool({"info"}).exitCode, 5);
}

TEST_F(TwoPrograms, KeepUsersApartByTheLock) {
    TAVO::CoreObjects::registerCoreObjects();
    auto holder = TAVO::DeviceFactory::buildDevice("127.0.0.1", std::stoi(port_), "engineer", "tavo", false);
    const auto other = support::runProcess(setup("guest", {"relay", "list"}));
    EXPECT_EQ(other.exitCode, 4);
    EXPECT_THAT(other.errors, HasSubstr("The device is locked by engineer"));
    EXPECT_EQ(support::runProcess(setup("guest", {"info"})).exitCode, 0);
    holder.reset();
    EXPECT_EQ(support::runProcess(setup("guest", {"relay", "list"})).exitCode, 0);
}

} // namespace
} // namespace tool_test
