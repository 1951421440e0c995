#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <fstream>
#include <functional>
#include <memory>
#include <string>
#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tests/cli/tool_fixture.h>
#include <tests/support/appliance_server.h>
#include <tests/support/sanitizers.h>

namespace tool_test {
namespace {

using support::Bytes;
using support::joined;
using support::u32;

constexpr std::size_t large = 512 * 1024;

/// Kilobytes that a process has had in memory at most.
std::size_t peakOf(pid_t process) {
    std::ifstream status("/proc/" + std::to_string(process) + "/status");
    for (std::string word; status >> word;)
        if (std::size_t kilobytes = 0; word == "VmHWM:" && status >> kilobytes)
            return kilobytes;
    return 0;
}

/// A list of as many copies of an element as take so many bytes.
Bytes listOf(const Bytes& element, std::size_t size) {
    const auto count = size / element.size();
    auto list = u32(static_cast<std::uint32_t>(count));
    list.reserve(size + 4);
    for (std::size_t i = 0; i < count; ++i)
        list.insert(list.end(), element.begin(), element.end());
    return list;
}

/// What the tool takes for a large reply of a device that has one object.
class ToolMemory : public testing::Test {
protected:
    void SetUp() override {
        if (support::sanitizerTakesMemory)
            GTEST_SKIP() << "the sanitizer needs memory of its own";
        support::addFixedObjects(appliance);
        appliance.object(0).method("unlock", [this](const Bytes&) {
            while (tool == 0)
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
            peak = peakOf(tool);
            return support::result(0);
        });
    }

    support::FakeObject& addObject(const std::string& type, std::uint32_t minor = 0) {
        appliance.object(0).method("rootMembers",
                                   support::result(0, joined({u32(1), support::text(type), u32(10)})));
        return appliance.add(10, type).version(1, minor, 0);
    }

    /// Kilobytes at most until the lock is given back, after all output.
    std::size_t peakOfRun(const Words& arguments, int exitCode) {
        support::ApplianceServer server(appliance);
        auto setup = toolWith(
            Words{"--host", "127.0.0.1", "--port", std::to_string(server.port()), "--user", "engineer"} +
            arguments);
        setup.environment["TAVO_PASSWORD"] = "tavo";
        setup.input = batch;
        tool = 0;
        support::Process process(setup);
        tool = process.id();
        const auto run = process.wait();
        EXPECT_EQ(run.exitCode, exitCode) << run.errors.substr(0, 1000);
        return peak;
    }

    /// How many bytes the tool takes for each byte of a large reply, in both forms of its output at most.
    /// `fill` makes a reply of about that size and sees to it that the device gives it.
    double factorOf(const Words& arguments, const std::function<std::size_t(std::size_t)>& fill,
                    int exitCode = 0) {
        double factor = 0;
        for (const auto& form : {Words{}, Words{"--json"}}) {
            fill(100);
            const auto before = peakOfRun(form + arguments, exitCode);
            const auto bytes = fill(large);
            const auto after = peakOfRun(form + arguments, exitCode);
            EXPECT_GT(before, 0u);
            factor = std::max(factor, (static_cast<double>(after) - static_cast<double>(before)) * 1024 /
                                          static_cast<double>(bytes));
        }
        RecordProperty("factor", std::to_string(factor));
        return factor;
    }

    /// The same for the reply of one method, a list of equal elements.
    double factorOfList(const Words& arguments, const std::string& method, const Bytes& element,
                        const Bytes& behind = {}) {
        return factorOf(arguments, [&](std::size_t size) {
            const auto reply = joined({listOf(element, size), behind});
            appliance.object(10).method(method, support::result(0, reply));
            return reply.size();
        });
    }

    support::FakeAppliance appliance;
    std::string batch;
    std::atomic<pid_t> tool = 0;
    std::atomic<std::size_t> peak = 0;
};

/// A header of a short name, and the end of a status without connections.
const Bytes header = joined({support::text("ab"), {1, 0, 1}});
const Bytes noConnections = u32(0);

TEST_F(ToolMemory, IsSmallForTheStatusOfManyHeaders) {
    addObject("jtag", 1).method("headerStatusGet");
    EXPECT_LE(factorOfList({"header", "status"}, "headerStatusGet", header, noConnections), 8);
}

TEST_F(ToolMemory, IsSmallForManyRecordsInAnyCall) {
    addObject("jtag", 1).method("headerStatusGet");
    EXPECT_LE(factorOfList({"call", "jtag.headerStatusGet"}, "headerStatusGet", header, noConnections), 8);
    batch = "jtag.headerStatusGet\n";
    EXPECT_LE(factorOfList({"batch", "-"}, "headerStatusGet", header, noConnections), 8);
}

TEST_F(ToolMemory, IsSmallForManyConnectionsOfHeaders) {
    addObject("jtag", 1).method("headerStatusGet");
    const auto connection = joined({u32(1), support::text("a"), u32(1), support::text("b")});
    const auto fill = [&](std::size_t size) {
        const auto reply = joined({u32(0), listOf(connection, size)});
        appliance.object(10).method("headerStatusGet", support::result(0, reply));
        return reply.size();
    };
    // The record alone: for 18 bytes that came two vectors in 48 bytes, and for each 32 bytes on the heap.
    EXPECT_LE(factorOf({"header", "status"}, fill), 10);
}

TEST_F(ToolMemory, IsSmallForALongText) {
    addObject("cfa633").method("available");
    for (const auto* piece : {"\x1b", "ab", "\xff"}) {
        const auto fill = [&](std::size_t size) {
            std::string text;
            while (text.size() < size)
                text += piece;
            appliance.object(10).method("available",
                                        support::result(0, joined({{1}, u32(0), support::text(text)})));
            return text.size();
        };
        EXPECT_LE(factorOf({"lcd", "show"}, fill), 8);
        EXPECT_LE(factorOf({"call", "cfa633.available"}, fill), 8);
    }
}

TEST_F(ToolMemory, IsSmallForALongErrorMessage) {
    addObject("relay").method("get");
    const auto fill = [&](std::size_t size) {
        appliance.object(10).method("get", [size](const Bytes&) -> Bytes {
            throw support::DeviceFault{1006, std::string(size, '\x1b')};
        });
        return size;
    };
    EXPECT_LE(factorOf({"relay", "get", "relay"}, fill, 1), 8);
    EXPECT_LE(factorOf({"call", "relay.get"}, fill, 1), 8);
}

TEST_F(ToolMemory, IsSmallForManyPostCodes) {
    auto& receiver = addObject("lpcPostCode");
    receiver.method("fifoGet");
    receiver.method("fifoStatusGet", support::result(0, Bytes(8, 0)));
    receiver.method("postCodeGet", support::result(0, Bytes(4, 0)));
    EXPECT_LE(factorOfList({"post", "list"}, "fifoGet", Bytes(11, 1)), 8);
}

TEST_F(ToolMemory, IsSmallForWhatASerialPortReceived) {
    auto& port = addObject("com");
    for (const auto* method : {"open", "close", "recv"})
        port.method(method);
    const auto fill = [&](std::size_t size) {
        auto rest = std::make_shared<Bytes>(size, std::uint8_t{0x9b});
        port.method("recv", [rest](const Bytes&) {
            const auto reply = support::result(0, support::block(*rest));
            rest->clear();
            return reply;
        });
        return size;
    };
    EXPECT_LE(factorOf({"serial", "--wait", "0.1"}, fill), 8);
}

TEST_F(ToolMemory, IsNotTakenForAnAnnouncedNumberOfBits) {
    auto& jtag = addObject("jtag", 1);
    for (const auto* method : {"optionRepeatGet", "optionRetryGet", "optionTerminationStateGet",
                               "optionPrePostTckGet", "optionTckFrequencyGet", "enableGet"})
        jtag.method(method, support::result(0, Bytes(16, 0)));
    const auto expected = [&](std::uint32_t bits) {
        const auto part = joined({u32(bits), support::block({1}), support::block({1})});
        jtag.method("optionTdoExpectedGet", support::result(0, joined({part, part})));
    };
    expected(8);
    const auto before = peakOfRun({"jtag", "options"}, 0);
    expected(0x7FFFFFFF);
    const auto after = peakOfRun({"jtag", "options"}, 9);
    EXPECT_LT(after, before + 4096);
}

} // namespace
} // namespace tool_test
