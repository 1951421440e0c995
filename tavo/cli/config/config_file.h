#pragma once

#include <string>
#include <vector>

#include <tavo/config/config_file.h>

namespace TAVO::cli {

using config::ConfigDevice;
using config::ConfigFile;
using config::ConfigSection;
using config::parseConfig;

/// As those of the library, with its faults as Failures (usage).
ConfigFile readConfig();
void requireSound(const ConfigFile& config);
std::vector<ConfigDevice> devicesOf(const ConfigFile& config, const std::string& group);

} // namespace TAVO::cli
