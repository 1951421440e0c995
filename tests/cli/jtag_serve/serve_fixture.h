#pragma once

#include <csignal>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <memory>
#include <stdexcept>
#include <string>

#include <tavo/simulator/objects/jtag.h>
#include <tests/cli/tool_fixture.h>

namespace tool_test {

/// A server of the tool as a process of its own, which has told where it is.
class ServingProcess {
public:
    support::ProcessOutcome wait() { return process_.wait(); }
    support::ProcessOutcome end(int signal = SIGTERM) {
        process_.signal(signal);
        return process_.wait();
    }

protected:
    /// @param expected what stands before the place.
    ServingProcess(const support::ProcessSetup& setup, const std::string& expected)
        : process_(setup) {
        const auto told = process_.firstLine();
        if (!told.starts_with(expected))
            throw std::runtime_error("the server said: " + told);
        place_ = told.substr(expected.size());
    }

    const support::Process& process() const { return process_; }
    const std::string& place() const { return place_; }

private:
    support::Process process_;
    std::string place_;
};

/// One that listens for clients over the network.
class CableProcess : public ServingProcess {
public:
    explicit CableProcess(const support::ProcessSetup& setup)
        : ServingProcess(setup, "listening on 127.0.0.1:") {}

    std::uint16_t port() const { return static_cast<std::uint16_t>(std::stoi(place())); }
};

/// A JTAG port of a simulated device that is served to programs.
class ServeTest : public SimulatedTool {
protected:
    explicit ServeTest(const std::string& topology = "standard", std::string jtag = "cpu0.jtag")
        : SimulatedTool(topology)
        , object(std::move(jtag))
        , folder(std::filesystem::path(testing::TempDir()) /
                 ("tool_cable_" + std::to_string(simulator.port()))) {
        std::filesystem::create_directories(folder);
        simulator.inspect([](TAVO::simulator::Appliance& appliance) { appliance.board()->setPower(true); });
    }
    ~ServeTest() override { std::filesystem::remove_all(folder); }

    std::unique_ptr<CableProcess> serve(const std::string& protocol, const Words& more = {}) const {
        return std::make_unique<CableProcess>(
            setupOf(Words{"jtag", "serve", "--object", object, protocol, "0"} + more));
    }
    template <class Action>
    auto withPort(Action action) {
        return simulator.inspect([&](TAVO::simulator::Appliance& appliance) {
            return action(appliance.get<TAVO::simulator::Jtag>(object).port());
        });
    }

    std::string fileWith(const std::string& name, const std::string& content) const {
        const auto path = (folder / name).string();
        std::ofstream(path, std::ios::binary) << content;
        return path;
    }

    std::string object;
    std::filesystem::path folder;
};

} // namespace tool_test
