#include <algorithm>
#include <string>
#include <string_view>
#include <utility>

#include <tavo/cli/config/effective.h>
#include <tavo/cli/failure.h>
#include <tests/fuzz/fuzz_input.h>

// The tool's configuration file. Input: the file.

namespace {

using fuzz::require;
using TAVO::cli::ConfigFile;

bool isPlain(std::string_view name) {
    return !name.empty() && std::all_of(name.begin(), name.end(), [](unsigned char c) {
        return c > ' ' && c < 0x7f &&
               std::string_view("\"'$;&|<>*?()[]{}\\`").find(static_cast<char>(c)) == std::string_view::npos;
    });
}

void checkFaults(const ConfigFile& config, std::string_view content) {
    const auto lines = 1 + static_cast<std::size_t>(std::count(content.begin(), content.end(), '\n'));
    std::pair<std::size_t, std::size_t> last;
    for (const auto& fault : config.faults) {
        const std::pair<std::size_t, std::size_t> place(fault.place.line, fault.place.column);
        require(!fault.message.empty(), "a fault is told in words");
        require(place.first >= 1 && place.second >= 1 && place.first <= lines + 1, "a fault has a place");
        require(last <= place, "faults are in the order of the file");
        last = place;
    }
}

void checkDevices(const ConfigFile& config) {
    for (const auto& device : config.devices) {
        require(isPlain(device.name), "a name can stand in a command line");
        TAVO::cli::ConnectionOptions given;
        given.host = device.name;
        const auto effective = TAVO::cli::effectiveOptions(given, config);
        require(effective.device == device.name, "a device is found by its name");
        require(!effective.connection.host.empty() && *effective.connection.port > 0, "a device has a place");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t length) {
    const std::string content(bytes, bytes + length);
    const auto config = TAVO::cli::parseConfig("/c.toml", content, "/home/alice");
    checkFaults(config, content);
    checkDevices(config);
    return 0;
}
