#pragma once

#include <chrono>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <optional>
#include <string>

#include <tavo/simulator/objects/com.h>
#include <tests/cli/jtag_serve/serve_fixture.h>
#include <tests/cli/tool_fixture.h>

namespace tool_test {

/// `tavo serial serve --pty`.
class TerminalProcess : public ServingProcess {
public:
    explicit TerminalProcess(const support::ProcessSetup& setup)
        : ServingProcess(setup, "PTY ") {}

    using ServingProcess::process;
    const std::string& path() const { return place(); }
};

/// The console of a simulated board that is served to programs.
class SerialServeTest : public SimulatedTool {
protected:
    SerialServeTest()
        : folder(std::filesystem::path(testing::TempDir()) /
                 ("tavo_serial_" + std::to_string(simulator.port()))) {
        std::filesystem::create_directories(folder);
    }
    ~SerialServeTest() override { std::filesystem::remove_all(folder); }

    void bootBoard() {
        simulator.inspect([](TAVO::simulator::Appliance& appliance) {
            appliance.get<TAVO::simulator::Relay>("power").set(true);
            appliance.clock().advance(std::chrono::seconds(5));
        });
    }
    std::unique_ptr<CableProcess> serve(const std::string& protocol, const Words& more = {}) const {
        return std::make_unique<CableProcess>(setupOf(Words{"serial", "serve", protocol, "0"} + more));
    }
    std::unique_ptr<TerminalProcess> serveTerminal(const Words& more = {}) const {
        return std::make_unique<TerminalProcess>(setupOf(Words{"serial", "serve", "--pty"} + more));
    }
    template <class Action>
    auto withPort(Action action) {
        return simulator.inspect([&](TAVO::simulator::Appliance& appliance) {
            return action(appliance.get<TAVO::simulator::Com>("com").port());
        });
    }
    std::optional<TAVO::simulator::SerialPort::Settings> settings() {
        return withPort([](auto& port) { return port.settings(); });
    }
    void breakDevice() {
        withPort([](auto& port) { return port.close(); });
    }
    void expectAllGivenBack(const support::ProcessOutcome& end) {
        EXPECT_EQ(end.exitCode, 0) << end.errors;
        EXPECT_EQ(end.errors, "");
        EXPECT_FALSE(settings());
        EXPECT_FALSE(simulator.lockHolder());
    }
    std::string fileWith(const std::string& name, const std::string& content) const {
        const auto path = (folder / name).string();
        std::ofstream(path, std::ios::binary) << content;
        return path;
    }

    std::filesystem::path folder;
};

} // namespace tool_test
