#pragma once

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <set>
#include <string>

#include <tavo/simulator/objects/lpc.h>
#include <tests/cli/jtag_serve/serve_fixture.h>
#include <tests/cli/rom_serve/flash_model.h>
#include <tests/cli/tool_fixture.h>

namespace tool_test {

/// A ROM emulation of a simulated device, which is served to programs.
class RomServeTest : public SimulatedTool {
protected:
    explicit RomServeTest(std::size_t size = std::size_t{8} * 1024 * 1024)
        : SimulatedTool("bare")
        , folder(std::filesystem::path(testing::TempDir()) /
                 ("tool_rom_serve_" + std::to_string(simulator.port()))) {
        std::filesystem::create_directories(folder);
        simulator.inspect([&](TAVO::simulator::Appliance& appliance) {
            appliance.add<TAVO::simulator::LpcRomEmulation>("rom", appliance.board(), size);
        });
    }
    ~RomServeTest() override { std::filesystem::remove_all(folder); }

    std::unique_ptr<CableProcess> serve(const Words& more = {}) const {
        return std::make_unique<CableProcess>(setupOf(Words{"rom", "serve", "0"} + more));
    }

    template <class Action>
    auto withRom(Action action) {
        return simulator.inspect([&](TAVO::simulator::Appliance& appliance) {
            return action(appliance.get<TAVO::simulator::LpcRomEmulation>("rom").rom());
        });
    }
    FlashBytes memory(std::int64_t offset, std::int64_t length) {
        return withRom([&](auto& rom) { return *rom.read(offset, length); });
    }
    FlashBytes memory() {
        return withRom([](auto& rom) { return *rom.read(0, static_cast<std::int64_t>(rom.capacity())); });
    }
    bool isEnabled() {
        return withRom([](auto& rom) { return rom.enabled(); });
    }
    void setEnabled(bool enabled) {
        withRom([&](auto& rom) { rom.setEnabled(enabled); });
    }

    std::size_t exchangesWith(std::string_view method) const {
        std::set<std::uint64_t> requests;
        for (const auto& call : callsOf("rom", method))
            requests.insert(call.request);
        return requests.size();
    }

    std::string fileWith(const std::string& name, const FlashBytes& content) const {
        const auto path = (folder / name).string();
        std::ofstream(path, std::ios::binary)
            .write(reinterpret_cast<const char*>(content.data()),
                   static_cast<std::streamsize>(content.size()));
        return path;
    }
    FlashBytes contentOf(const std::string& name) const {
        std::ifstream in(folder / name, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }

    std::filesystem::path folder;
};

} // namespace tool_test
