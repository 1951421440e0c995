#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <tavo/config/host_address.h>

/// The file of the user's devices.
namespace TAVO::config {

/// A place in the file; lines and columns count from 1.
struct ConfigPlace {
    std::uint32_t line = 1;
    std::uint32_t column = 1;
};

/// A value, and where the file states it.
template <class Value>
struct Configured {
    Value value;
    ConfigPlace place;
};

/// What one section states.
struct ConfigSection {
    std::optional<Configured<HostAddress>> host;
    std::optional<Configured<std::uint16_t>> port;
    std::optional<Configured<std::string>> user;
    std::optional<Configured<std::string>> passwordFile; ///< a whole path
    std::optional<Configured<std::string>> via;
    std::optional<Configured<bool>> secure;
    std::optional<Configured<double>> timeout; ///< in seconds; 0 is none
    std::optional<Configured<std::vector<std::string>>> groups;
};

struct ConfigDevice {
    std::string name;
    ConfigSection section;
};

struct ConfigFault {
    ConfigPlace place;
    std::string message;
};

struct ConfigFile {
    std::string path;
    /// Whether there is such a file. Without one everything else is empty.
    bool exists = false;
    ConfigSection defaults;
    /// In the order of the file.
    std::vector<ConfigDevice> devices;
    /// In the order of the file; the sections leave out what is at fault.
    std::vector<ConfigFault> faults;

    const ConfigDevice* find(std::string_view name) const;
    /// The groups of a device, those of the defaults where its section names none.
    std::vector<std::string> groupsOf(const ConfigDevice& device) const;
    /// "path:line:column"
    std::string textOf(ConfigPlace place) const;
};

/// @param path stands in messages, and a relative password file is beside it.
/// @param home what ~/ stands for at the beginning of a password file; may be empty.
ConfigFile parseConfig(std::string path, std::string_view content, const std::string& home);

/// The user's file, faults included: TAVO_CONFIG, else tavo/config.toml in XDG_CONFIG_HOME or ~/.config.
/// Without any of these variables there is none, and its path is empty.
/// @throws Fault if the file of TAVO_CONFIG is missing, or a file cannot be read.
ConfigFile readConfig();

/// @throws Fault that names place and cause of the first fault.
void refuseFaults(const ConfigFile& config);

/// The devices of a group, or all if it is empty.
/// @throws Fault that names the groups that there are, if none has this one.
std::vector<ConfigDevice> devicesInGroup(const ConfigFile& config, const std::string& group);

} // namespace TAVO::config
