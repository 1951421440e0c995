#include <chrono>
#include <csignal>
#include <future>
#include <memory>
#include <string>
#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tavo/client.h>
#include <tests/cli/tool_fixture.h>
#include <tests/support/all_types.h>

namespace tool_test {
namespace {

using namespace std::chrono_literals;
using testing::HasSubstr;
using testing::IsEmpty;

class LockCommands : public ToolTest {
protected:
    LockCommands() { support::registerAllTypes(); }

    std::shared_ptr<TAVO::Device> open(const std::string& user) const {
        return TAVO::DeviceFactory::buildDevice("127.0.0.1", simulator.port(), user, "tavo", false);
    }
    bool soonLocked(bool locked) const {
        const auto deadline = std::chrono::steady_clock::now() + 20s;
        while (simulator.lockHolder().has_value() != locked) {
            if (std::chrono::steady_clock::now() > deadline)
                return false;
            std::this_thread::sleep_for(1ms);
        }
        return true;
    }
};

TEST_F(LockCommands, StatusTellsTheHolderAndTakesNothing) {
    EXPECT_EQ(tool({"lock", "status"}).output, "not locked\n");
    EXPECT_EQ(jsonOf(tool({"--json", "lock", "status"}).output),
              (nlohmann::json{{"locked", false}, {"user", nullptr}}));
    const auto guest = open("guest");
    EXPECT_EQ(tool({"lock", "status"}).output, "locked by guest\n");
    EXPECT_EQ(jsonOf(tool({"--json", "lock", "status"}).output),
              (nlohmann::json{{"locked", true}, {"user", "guest"}}));
    EXPECT_EQ(runTool(address() + Words{"lock", "status"}).output, "locked by guest\n") << "without a user";
    EXPECT_EQ(simulator.lockHolder()->user, "guest");
    EXPECT_TRUE(callsOf("device", "lock").size() == 1);
}

TEST_F(LockCommands, OtherCommandsLeaveTheUsersLock) {
    const auto bridge = open("engineer");
    EXPECT_EQ(tool({"relay", "set", "power", "on"}).exitCode, 0);
    EXPECT_EQ(tool({"tree"}).exitCode, 0);
    ASSERT_TRUE(simulator.lockHolder());
    EXPECT_EQ(tool({"lock", "release"}).exitCode, 0);
    EXPECT_FALSE(simulator.lockHolder());
    EXPECT_EQ(tool({"lock", "release"}).exitCode, 0);
    EXPECT_FALSE(simulator.lockHolder());
}

TEST_F(LockCommands, NobodyElseReleasesALock) {
    const auto guest = open("guest");
    const auto outcome = tool({"lock", "release"});
    EXPECT_EQ(outcome.exitCode, 4);
    EXPECT_THAT(outcome.errors, HasSubstr("The device is locked by guest"));
    EXPECT_TRUE(simulator.lockHolder());
}

TEST_F(LockCommands, HoldEndsWithItsCommand) {
    const auto inner = std::string("'") + TAVO_PROGRAM + "' --host 127.0.0.1 --port " +
                       std::to_string(simulator.port()) + " lock status";
    const auto held = tool({"lock", "hold", "--", "sh", "-c", inner + "; exit 7"});
    EXPECT_EQ(held.output, "locked by engineer\n");
    EXPECT_THAT(held.errors, IsEmpty());
    EXPECT_EQ(held.exitCode, 7);
    EXPECT_FALSE(simulator.lockHolder());
    EXPECT_EQ(tool({"lock", "hold", "--", "sh", "-c", "kill -9 $$"}).exitCode, 128 + SIGKILL);
    const auto absent = tool({"lock", "hold", "--", "/no/such/program"});
    EXPECT_EQ(absent.exitCode, 2);
    EXPECT_THAT(absent.errors, HasSubstr("cannot start '/no/such/program'"));
    EXPECT_FALSE(simulator.lockHolder());
}

TEST_F(LockCommands, HoldEndsWithASignal) {
    for (const Words& command : {Words{}, Words{"--", "sleep", "1000"}}) {
        support::Process process(setupOf(Words{"lock", "hold"} + command));
        ASSERT_TRUE(soonLocked(true));
        std::this_thread::sleep_for(50ms);
        process.signal(SIGTERM);
        EXPECT_EQ(process.wait().signal, SIGTERM);
        EXPECT_FALSE(simulator.lockHolder());
    }
}

TEST_F(LockCommands, WaitEndsWhenTheLockIsFree) {
    EXPECT_EQ(tool({"lock", "wait"}).exitCode, 0);
    const auto guest = open("guest");
    auto waiting = std::async(std::launch::async, [&] { return tool({"lock", "wait"}); });
    EXPECT_EQ(waiting.wait_for(700ms), std::future_status::timeout);
    guest->unlock();
    EXPECT_EQ(waiting.get().exitCode, 0);
    EXPECT_FALSE(simulator.lockHolder());
}

TEST_F(LockCommands, EveryCommandCanWaitForTheLock) {
    const auto guest = open("guest");
    const auto outcome = tool({"--wait-lock", "100ms", "relay", "get", "power"});
    EXPECT_EQ(outcome.exitCode, 4);
    EXPECT_THAT(outcome.errors, HasSubstr("The device is locked by guest"));
    auto waiting = std::async(std::launch::async, [&] {
        return tool({"--wait-lock", "30s", "relay", "get", "power"});
    });
    EXPECT_EQ(waiting.wait_for(300ms), std::future_status::timeout);
    guest->unlock();
    EXPECT_EQ(waiting.get().output, "off\n");
}

} // namespace
} // namespace tool_test
