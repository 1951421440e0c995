#include <chrono>
#include <csignal>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tavo/simulator/objects/lpc.h>
#include <tests/cli/tool_fixture.h>

namespace tool_test {
namespace {

namespace fs = std::filesystem;
using namespace TAVO::simulator;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr const char* object = "lpc.lpcRomEmulation";
constexpr std::size_t romSize = 8 * 1024 * 1024;

std::string patternOf(std::size_t length) {
    std::string bytes(length, '\0');
    std::uint32_t state = 12345;
    for (auto& byte : bytes) {
        state = state * 1664525 + 1013904223;
        byte = static_cast<char>(state >> 24);
    }
    return bytes;
}

class RomCommand : public SimulatedTool {
protected:
    RomCommand()
        : folder(fs::path(testing::TempDir()) / ("tool_rom_" + std::to_string(simulator.port()))) {
        fs::create_directory(folder);
    }
    ~RomCommand() override { fs::remove_all(folder); }

    std::string pathOf(const std::string& name) const { return (folder / name).string(); }
    std::string fileWith(const std::string& content) const {
        const auto path = pathOf("image");
        std::ofstream(path, std::ios::binary) << content;
        return path;
    }
    static std::string contentOf(const std::string& path) {
        std::ifstream in(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }
    RomEmulation& romOf(Appliance& appliance) { return appliance.get<LpcRomEmulation>(object).rom(); }
    std::string memory(std::size_t offset, std::size_t length) {
        const auto bytes = simulator.inspect([&](Appliance& appliance) {
            return *romOf(appliance).read(static_cast<std::int64_t>(offset),
                                          static_cast<std::int64_t>(length));
        });
        return {bytes.begin(), bytes.end()};
    }
    void fill(std::size_t offset, const std::string& bytes) {
        simulator.inspect([&](Appliance& appliance) {
            return romOf(appliance).write(static_cast<std::int64_t>(offset),
                                          std::vector<std::uint8_t>(bytes.begin(), bytes.end()));
        });
    }
    void setEnabled(bool on) {
        simulator.inspect([&](Appliance& appliance) { romOf(appliance).setEnabled(on); });
    }
    bool enabled() {
        return simulator.inspect([this](Appliance& appliance) { return romOf(appliance).enabled(); });
    }
    std::size_t exchangesWith(std::string_view method) const {
        std::set<std::uint64_t> requests;
        for (const auto& call : callsOf(object, method))
            requests.insert(call.request);
        return requests.size();
    }

    fs::path folder;
};

TEST_F(RomCommand, LoadWritesTheWholeMemoryInFewExchangesAndReadsItBack) {
    const auto image = patternOf(romSize);
    const auto run = tool({"rom", "load", fileWith(image), "-y"});
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_EQ(run.output, "8388608 bytes loaded, verified\n");
    EXPECT_THAT(run.errors, IsEmpty());
    EXPECT_TRUE(memory(0, romSize) == image);
    EXPECT_EQ(exchangesWith("sramSet"), 4u);
    EXPECT_EQ(exchangesWith("sramGet"), 4u);
    EXPECT_FALSE(enabled());
}

TEST_F(RomCommand, LoadPutsTheImageWhereItIsToldAndLeavesTheRest) {
    const auto image = patternOf(1024 * 1024 + 7);
    const auto run = tool(
        {"rom", "load", "-", "--offset", "0x100001", "--enable", "--yes", "--json", "--no-verify"}, image);
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_EQ(jsonOf(run.output), nlohmann::json({{"object", object},
                                                  {"file", "-"},
                                                  {"offset", 0x100001},
                                                  {"bytes", image.size()},
                                                  {"verified", false},
                                                  {"enabled", true}}));
    EXPECT_TRUE(memory(0x100000, image.size() + 2) == "\xff" + image + "\xff");
    EXPECT_THAT(callsOf(object, "sramGet"), IsEmpty());
    EXPECT_TRUE(enabled());
}

TEST_F(RomCommand, LoadAsksOnlyAboutAnImageThatFits) {
    support::PseudoTerminal terminal;
    auto setup = setupOf({"rom", "load", fileWith("12345"), "--offset", std::to_string(romSize - 4)});
    setup.terminal = terminal.name();
    const auto run = support::runProcess(setup);
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_EQ(run.errors, "tavo: 5 bytes at offset 8388604 do not fit in the ROM's 8388608 bytes\n");
}

TEST_F(RomCommand, ProgressHasCursorCodesOnlyOnATerminalThatKnowsThem) {
    const auto file = fileWith("12345");
    for (const auto* type : {"dumb", "", "xterm"}) {
        support::PseudoTerminal terminal;
        auto setup = setupOf({"rom", "load", file, "-y"});
        setup.terminal = terminal.name();
        setup.errorsOnTerminal = true;
        setup.environment["TERM"] = type;
        EXPECT_EQ(support::runProcess(setup).exitCode, 0);
        terminal.type("end\n");
        EXPECT_EQ(terminal.waitFor("end").find('\x1b') != std::string::npos, type == std::string("xterm"))
            << type;
    }
    EXPECT_EQ(tool({"rom", "load", file, "-y"}).errors, "");
}

TEST_F(RomCommand, LoadRefusesAnImageThatDoesNotFitBeforeAnyOfItIsSent) {
    const auto run = tool({"rom", "load", fileWith("12345"), "--offset", std::to_string(romSize - 4), "-y"});
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_EQ(run.errors, "tavo: 5 bytes at offset 8388604 do not fit in the ROM's 8388608 bytes\n");
    EXPECT_THAT(callsOf(object, "sramSet"), IsEmpty());
    EXPECT_EQ(tool({"rom", "load", fileWith(""), "-y"}).exitCode, 2);
    EXPECT_EQ(tool({"rom", "load", pathOf("absent"), "-y"}).exitCode, 2);
}

TEST_F(RomCommand, LoadWithoutTerminalAndConsentSendsNothing) {
    const auto run = tool({"rom", "load", fileWith("x")});
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_THAT(run.errors, HasSubstr("--yes is required"));
    EXPECT_EQ(simulator.connectionCount(), 0u);
}

TEST_F(RomCommand, LoadEndsWithTheWriteThatIsRefused) {
    const auto file = fileWith("12345");
    const Words arguments{"rom", "load", file, "-y", "--enable"};
    simulator.failNext(faults::ReturnCode{1}, requestsUntil(object, "sramSet", arguments));
    setEnabled(false);
    const auto run = tool(arguments);
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_THAT(run.errors, HasSubstr("lpc.lpcRomEmulation.sramSet returned code 1"));
    EXPECT_FALSE(enabled());
}

TEST_F(RomCommand, LoadSwitchesAnEnabledRomOffUntilAllIsVerified) {
    setEnabled(true);
    const auto run = tool({"rom", "load", fileWith("image"), "-y"});
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_EQ(run.output, "5 bytes loaded, verified, enabled\n");
    std::vector<std::string> order;
    for (const auto& call : simulator.calls())
        if (call.object == object &&
            (call.method.starts_with("sramS") || call.method == "sramGet" || call.method == "enableSet"))
            order.push_back(call.method + " " +
                            (call.method == "enableSet" ? call.parameters.toString() : ""));
    EXPECT_EQ(order, (std::vector<std::string>{"sramSizeGet ", "enableSet enable=false", "sramSet ",
                                               "sramGet ", "enableSet enable=true"}));
    EXPECT_TRUE(enabled());
}

TEST_F(RomCommand, LoadLiveLeavesTheRomEnabled) {
    setEnabled(true);
    const auto run = tool({"rom", "load", fileWith("image"), "-y", "--live"});
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_THAT(callsOf(object, "enableSet"), IsEmpty());
    EXPECT_TRUE(enabled());
}

TEST_F(RomCommand, LoadThatASignalEndsLeavesTheRomOffAndSaysHowFarItCame) {
    const auto file = fileWith("x");
    const Words load{"rom", "load", file, "-y"};
    setEnabled(true);
    const auto ahead = requestsUntil(object, "sramSet", load) + 1;
    fileWith(patternOf(romSize));
    for (std::uint64_t i = 0; i < 20; ++i)
        simulator.failNext(faults::Silent{}, ahead + i);
    const auto request = simulator.requestCount() + ahead;
    support::Process process(setupOf(load));
    const auto deadline = std::chrono::steady_clock::now() + support::processPatience;
    while (simulator.requestCount() < request && std::chrono::steady_clock::now() < deadline)
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    process.signal(SIGINT);
    const auto run = process.wait();
    EXPECT_EQ(run.signal, SIGINT);
    EXPECT_EQ(run.errors, "tavo: warning: at least 2097152 of 8388608 bytes were written; the ROM is off\n");
    EXPECT_FALSE(enabled());
}

TEST_F(RomCommand, LoadWithADifferenceLeavesTheRomOff) {
    setEnabled(true);
    const auto file = fileWith("image");
    const Words load{"rom", "load", file, "-y"};
    simulator.failNext(faults::ReturnCode{6}, requestsUntil(object, "sramGet", load));
    const auto run = tool(load + Words{"--json"});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_THAT(run.errors, HasSubstr("at least 5 of 5 bytes were written; the ROM is off"));
    EXPECT_FALSE(enabled());
}

TEST_F(RomCommand, VerifyNamesTheFirstDifference) {
    auto image = patternOf(3 * 1024 * 1024);
    fill(0x1000, image);
    const auto same = tool({"rom", "verify", fileWith(image), "--offset", "0x1000"});
    EXPECT_EQ(same.exitCode, 0) << same.errors;
    EXPECT_EQ(same.output, "3145728 bytes verified\n");

    const char was = image[0x234567];
    image[0x234567] = static_cast<char>(~was);
    image.back() = static_cast<char>(~image.back());
    const auto file = fileWith(image);
    const auto other = tool({"rom", "verify", file, "--offset", "0x1000"});
    EXPECT_EQ(other.exitCode, 1);
    EXPECT_THAT(other.output, IsEmpty());
    EXPECT_THAT(other.errors, HasSubstr("first difference at offset 0x235567: the device has 0x"));
    EXPECT_THAT(other.errors, HasSubstr(" at 0x234567\n"));
}

TEST_F(RomCommand, SaveGivesBackWhatWasLoaded) {
    const auto image = contentOf("/usr/share/seabios/bios-256k.bin");
    if (image.empty())
        GTEST_SKIP() << "needs the package seabios";
    EXPECT_EQ(tool({"rom", "load", fileWith(image), "--offset", "0x7c0000", "-y"}).exitCode, 0);
    const auto run = tool({"rom", "save", pathOf("saved"), "--offset", "0x7c0000"});
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_EQ(run.output, "262144 bytes saved\n");
    EXPECT_TRUE(contentOf(pathOf("saved")) == image);
}

TEST_F(RomCommand, SaveWritesToStandardOutput) {
    const auto image = patternOf(3 * 1024 * 1024 + 5);
    fill(0x10, image);
    const auto run = tool({"rom", "save", "-", "--offset", "0x10", "--length", std::to_string(image.size())});
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_TRUE(run.output == image);
    EXPECT_THAT(run.errors, IsEmpty());
    auto full = setupOf({"rom", "save", "-"});
    full.outputFile = "/dev/full";
    EXPECT_EQ(support::runProcess(full).exitCode, 9);
}

TEST_F(RomCommand, SaveDoesNotMixTheMemoryWithJsonOrATerminal) {
    EXPECT_EQ(tool({"rom", "save", "-", "--json"}).exitCode, 2);
    const support::PseudoTerminal terminal;
    auto setup = setupOf({"rom", "save", "-"});
    setup.outputFile = terminal.name();
    const auto run = support::runProcess(setup);
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_THAT(run.errors, HasSubstr("standard output is a terminal"));
    EXPECT_EQ(simulator.connectionCount(), 0u);
}

TEST_F(RomCommand, SaveReplacesTheFileOnlyWhenAllWasRead) {
    const auto file = pathOf("image");
    const Words arguments{"rom", "save", file, "--length", "4"};
    fill(0, "new!");
    std::ofstream(file) << "old";
    simulator.failNext(faults::Close{}, requestsUntil(object, "sramGet", arguments));
    EXPECT_EQ(contentOf(file), "new!");
    std::ofstream(file) << "old";
    EXPECT_EQ(tool(arguments).exitCode, 5);
    EXPECT_EQ(contentOf(file), "old");
    EXPECT_EQ(std::distance(fs::directory_iterator(folder), fs::directory_iterator()), 1);

    EXPECT_EQ(tool({"rom", "save", file, "--offset", "1", "--length", std::to_string(romSize)}).exitCode, 2);
    EXPECT_EQ(tool({"rom", "save", pathOf("no/such/folder")}).exitCode, 2);
    EXPECT_EQ(tool({"rom", "save", folder.string()}).exitCode, 2);
    EXPECT_EQ(contentOf(file), "old");
}

} // namespace
} // namespace tool_test
