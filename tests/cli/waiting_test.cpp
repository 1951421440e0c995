#include <chrono>
#include <csignal>
#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tests/cli/tool_fixture.h>

namespace tool_test {
namespace {

using namespace std::chrono_literals;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
namespace faults = TAVO::simulator::faults;

const Words get{"call", "power.get"};
/// As good as for ever.
const Words sleep{"call", "system.usleep", "microseconds=1000000000"};

/// How the tool waits for a device that does not answer, and what ends it.
class Waiting : public ToolTest {
protected:
    void silenceFrom(std::uint64_t request, std::uint64_t count) {
        for (std::uint64_t i = 0; i < count; ++i)
            simulator.failNext(faults::Silent{}, request + i);
    }
    void awaitRequests(std::uint64_t count) const {
        const auto deadline = std::chrono::steady_clock::now() + support::processPatience;
        while (simulator.requestCount() < count && std::chrono::steady_clock::now() < deadline)
            std::this_thread::sleep_for(2ms);
        EXPECT_GE(simulator.requestCount(), count);
    }
};

TEST_F(Waiting, EndsAfterTheTimeThatTheUserGaveAndReleasesTheLock) {
    silenceFrom(requestsUntil("power", "get", get), 1);
    const auto run = tool(Words{"--timeout", "200ms"} + get);
    EXPECT_EQ(run.exitCode, 5);
    EXPECT_THAT(run.errors, HasSubstr("Call to device timed out."));
    EXPECT_THAT(run.output, IsEmpty());
    EXPECT_FALSE(simulator.lockHolder());
}

TEST_F(Waiting, SaysThatTheDeviceDidNotAnswerOnlyIfItDidNot) {
    const auto request = requestsUntil("power", "get", get);
    silenceFrom(request, 1);
    const auto silent = tool(Words{"--timeout", "200ms"} + get);
    EXPECT_EQ(silent.errors,
              "tavo: Call to device timed out. (127.0.0.1:" + std::to_string(simulator.port()) +
                  " did not answer within 200ms; --timeout sets the limit)\n");
    // The answer that describes the first object has hundreds of bytes.
    simulator.failNext(faults::Dribble{10ms});
    const auto slow = tool(Words{"--timeout", "1s"} + get);
    EXPECT_EQ(slow.exitCode, 5);
    EXPECT_THAT(slow.errors, HasSubstr("took longer than 1s; --timeout sets the limit)"));
    EXPECT_THAT(slow.errors, Not(HasSubstr("did not answer")));
}

TEST_F(Waiting, IsNotCutShortWhereTheUserAskedForIt) {
    for (const auto* call : {"system.usleep", "system.uwait"}) {
        const auto run = tool({"--timeout", "100ms", "call", call, "microseconds=600000"});
        EXPECT_EQ(run.exitCode, 0) << run.errors;
    }
    EXPECT_EQ(tool({"--timeout", "100ms", "batch", "-"}, "system.usleep microseconds=300000\n"
                                                         "system.uwait microseconds=300000\n")
                  .exitCode,
              0);
}

TEST_F(Waiting, IsToldOnATerminalOnceItLasts) {
    for (const bool slow : {true, false}) {
        support::PseudoTerminal terminal;
        auto setup = setupOf(Words{"--timeout", "1500ms"} + get);
        setup.terminal = terminal.name();
        setup.errorsOnTerminal = true;
        if (slow)
            simulator.failNext(faults::Silent{});
        support::Process process(setup);
        const auto run = process.wait();
        EXPECT_EQ(run.exitCode, slow ? 5 : 0);
        terminal.type("end\n");
        const auto line = "waiting for 127.0.0.1:" + std::to_string(simulator.port()) + " ...\r\n";
        EXPECT_EQ(terminal.waitFor("end").find(line) != std::string::npos, slow);
    }
    simulator.failNext(faults::Silent{});
    EXPECT_THAT(tool(Words{"--timeout", "1500ms"} + get).errors, Not(HasSubstr("waiting for")));
}

TEST_F(Waiting, EndsAfterThatTimeWhileTheDeviceIsOpenedOrIdentified) {
    simulator.failNext(faults::Silent{});
    EXPECT_EQ(tool(Words{"--timeout", "0.2"} + get).exitCode, 5);
    simulator.failNext(faults::Silent{}, 3);
    EXPECT_EQ(tool(Words{"--timeout", "0.2s"} + get).exitCode, 5);
    simulator.failNext(faults::Silent{});
    EXPECT_EQ(tool({"--timeout", "200ms", "info"}).exitCode, 5);
}

TEST_F(Waiting, EndsAlsoWhenTheDeviceIsSilentForGood) {
    silenceFrom(requestsUntil("power", "get", get), 20);
    const auto run = tool(Words{"--timeout", "100ms"} + get);
    EXPECT_EQ(run.exitCode, 5);
    EXPECT_THAT(run.errors, HasSubstr("Call to device timed out."));
}

TEST_F(Waiting, DoesNotMindATimeThatIsLongEnough) {
    EXPECT_EQ(tool(Words{"--timeout", "1m"} + get).exitCode, 0);
    EXPECT_EQ(tool(Words{"--timeout", "1h"} + get).exitCode, 0);
}

TEST_F(Waiting, TakesNoughtForAnyTime) {
    for (const auto* time : {"0", "0s"})
        EXPECT_EQ(tool(Words{"--timeout", time} + get).exitCode, 0) << time;
}

TEST_F(Waiting, RefusesATimeThatIsNone) {
    for (const auto* time : {"", "-1", "5x", "ms", "1e9h", "nan"})
        EXPECT_EQ(tool(Words{"--timeout", time} + get).exitCode, 2) << time;
}

TEST_F(Waiting, EndsOnASignalDuringACallAndReleasesTheLock) {
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        const auto before = simulator.requestCount();
        const auto request = requestsUntil("power", "get", get) + simulator.requestCount();
        support::Process process(setupOf(sleep));
        awaitRequests(request);
        process.signal(signal);
        EXPECT_EQ(process.wait().signal, signal);
        EXPECT_FALSE(simulator.lockHolder()) << signal;
        EXPECT_GT(simulator.requestCount(), before);
    }
}

TEST_F(Waiting, EndsOnASignalWhileTheDeviceIsOpened) {
    simulator.failNext(faults::Silent{}, 2);
    support::Process process(setupOf(get));
    awaitRequests(2);
    process.signal(SIGINT);
    EXPECT_EQ(process.wait().signal, SIGINT);
}

TEST_F(Waiting, EndsOnASignalEvenWhenTheDeviceStaysSilent) {
    const auto ahead = requestsUntil("power", "get", get);
    const auto request = simulator.requestCount() + ahead;
    silenceFrom(ahead, 20);
    support::Process process(setupOf(get));
    awaitRequests(request);
    process.signal(SIGTERM);
    EXPECT_EQ(process.wait().signal, SIGTERM);
}

TEST_F(Waiting, EndsAtOnceOnASecondSignal) {
    const auto ahead = requestsUntil("power", "get", get);
    const auto request = simulator.requestCount() + ahead;
    silenceFrom(ahead, 20);
    support::Process process(setupOf(get));
    awaitRequests(request);
    process.signal(SIGTERM);
    std::this_thread::sleep_for(100ms);
    process.signal(SIGTERM);
    EXPECT_EQ(process.wait().signal, SIGTERM);
}

} // namespace
} // namespace tool_test
