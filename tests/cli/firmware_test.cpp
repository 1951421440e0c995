#include <chrono>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tests/cli/tool_fixture.h>

namespace tool_test {
namespace {

using TAVO::simulator::Appliance;
using testing::HasSubstr;
using testing::IsEmpty;

class FirmwareCommand : public SimulatedTool {
protected:
    FirmwareCommand()
        : SimulatedTool("bare")
        , file(testing::TempDir() + "tool_firmware_" + std::to_string(simulator.port())) {}
    ~FirmwareCommand() override { std::remove(file.c_str()); }

    std::string fileWith(const std::string& content) const {
        std::ofstream(file, std::ios::binary) << content;
        return file;
    }
    /// An update that never goes on.
    void startUpdate() {
        simulator.inspect([](Appliance& appliance) {
            appliance.clock().freeze();
            appliance.firmware().update("main", {1}, appliance.clock().elapsed());
        });
    }

    std::string file;
};

TEST_F(FirmwareCommand, UpdatesAndWaitsForTheEnd) {
    const auto run = tool({"firmware", "update", "main", fileWith("new image"), "--wait", "-y"});
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_EQ(run.output, "done, 100 %\n");
    EXPECT_THAT(run.errors, IsEmpty()) << "no progress display without a terminal";
    EXPECT_EQ(callsOf("system", "firmwareUpdate").at(0).parameters.find("image")->toString(),
              "6e657720696d616765");
    EXPECT_EQ(jsonOf(tool({"firmware", "status", "main", "--json"}).output), nlohmann::json::parse(R"({
        "name": "main", "state": "done", "percent": 100, "first": 2, "second": 100})"));
}

TEST_F(FirmwareCommand, FailsWithAnImageThatTheDeviceRefuses) {
    const auto run = tool({"firmware", "update", "main", fileWith("BAD image"), "--wait", "-y"});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.output, "failed, 50 %\n");
    EXPECT_EQ(run.errors, "tavo: the update of firmware 'main': it failed\n");
    EXPECT_EQ(tool({"firmware", "status", "main", "--wait"}).exitCode, 1);
    EXPECT_EQ(tool({"firmware", "status", "main"}).exitCode, 0) << "the question was answered";
}

TEST_F(FirmwareCommand, FailsWhenAnUpdateHasStalled) {
    startUpdate();
    const auto run = tool({"firmware", "status", "main", "--wait", "--settle", "0.2"});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.output, "updating, 0 %\n");
    EXPECT_EQ(run.errors, "tavo: the update of firmware 'main': it has stalled: no progress in 200ms\n");
}

TEST_F(FirmwareCommand, WaitingEndsAtItsTimeout) {
    startUpdate();
    const auto run = tool({"firmware", "status", "main", "--wait", "--settle", "60", "--timeout", "0.2"});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.errors, "tavo: the update of firmware 'main': it is not done after 200ms\n");
}

TEST_F(FirmwareCommand, WaitsForNothingWithoutAnUpdate) {
    const auto run = tool({"firmware", "status", "fpga", "--wait", "--settle", "1e6"});
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_EQ(run.output, "no update so far\n");
}

TEST_F(FirmwareCommand, SaysThatAnUpdateIsStillRunning) {
    startUpdate();
    const auto run = tool({"firmware", "update", "main", fileWith("x"), "-y"});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_THAT(run.errors, HasSubstr("system.firmwareUpdate returned code 7: busy"));
}

TEST_F(FirmwareCommand, SendsNothingWithoutConsentOrContent) {
    const auto unasked = tool({"firmware", "update", "main", fileWith("x")});
    EXPECT_EQ(unasked.exitCode, 2);
    EXPECT_THAT(unasked.errors, HasSubstr("--yes is required"));
    const auto empty = tool({"firmware", "update", "main", fileWith("")});
    EXPECT_EQ(empty.exitCode, 2);
    EXPECT_EQ(empty.errors, "tavo: '" + file + "' is empty\n");
    EXPECT_EQ(tool({"firmware", "update", "main", "/", "-y"}).exitCode, 2);
    EXPECT_EQ(simulator.connectionCount(), 0u);
}

TEST_F(FirmwareCommand, ThatTheDeviceDoesNotKnowIsRefused) {
    const auto run = tool({"firmware", "status", "nope"});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.errors, "tavo: There is no firmware 'nope'\n");
}

} // namespace
} // namespace tool_test
