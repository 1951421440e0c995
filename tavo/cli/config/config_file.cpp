#include <tavo/cli/config/config_file.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <utility>

#include <fmt/format.h>
#include <unistd.h>

#include <tavo/cli/config/environment.h>
#include <tavo/cli/failure.h>
#include <tavo/cli/files.h>

namespace TAVO::cli {

namespace {

/// Empty without any of the variables.
std::string pathOfConfig() {
    if (const auto file = environmentVariable("TAVO_CONFIG"))
        return *file;
    const auto folder = environmentVariable("XDG_CONFIG_HOME");
    if (folder && folder->starts_with('/'))
        return *folder + "/tavo/config.toml";
    const auto home = environmentVariable("HOME");
    return home ? *home + "/.config/tavo/config.toml" : "";
}

bool isMissing(const std::string& path) { return ::access(path.c_str(), F_OK) != 0 && errno == ENOENT; }

} // namespace

const ConfigDevice* ConfigFile::find(std::string_view name) const {
    const auto found = std::find_if(devices.begin(), devices.end(),
                                    [name](const ConfigDevice& device) { return device.name == name; });
    return found == devices.end() ? nullptr : &*found;
}

std::vector<std::string> ConfigFile::groupsOf(const ConfigDevice& device) const {
    for (const auto& groups : {device.section.groups, defaults.groups})
        if (groups)
            return groups->value;
    return {};
}

std::string ConfigFile::textOf(ConfigPlace place) const {
    return fmt::format("{}:{}:{}", path, place.line, place.column);
}

ConfigFile readConfig() {
    const auto path = pathOfConfig();
    const bool isNamed = environmentVariable("TAVO_CONFIG").has_value();
    if (path.empty() || (!isNamed && isMissing(path))) {
        ConfigFile none;
        none.path = path;
        return none;
    }
    return parseConfig(path, readFile(path), environmentVariable("HOME").value_or(""));
}

void requireSound(const ConfigFile& config) {
    if (config.faults.empty())
        return;
    const auto& first = config.faults.front();
    const auto others = config.faults.size() - 1;
    throw Failure(
        ExitCode::usage,
        fmt::format("{}: {}{}", config.textOf(first.place), first.message,
                    others == 0 ? "" : fmt::format(" ('tavo config check' shows {} more)", others)));
}

} // namespace TAVO::cli
