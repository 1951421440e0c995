#include <tavo/cli/config/config_file.h>

#include <tavo/cli/config/fault_as_failure.h>

namespace TAVO::cli {

ConfigFile readConfig() { return withFailures(config::readConfig); }

void requireSound(const ConfigFile& config) {
    withFailures([&] { config::refuseFaults(config); });
}

std::vector<ConfigDevice> devicesOf(const ConfigFile& config, const std::string& group) {
    return withFailures([&] { return config::devicesInGroup(config, group); });
}

} // namespace TAVO::cli
