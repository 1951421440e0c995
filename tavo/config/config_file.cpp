#include <tavo/config/config_file.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <memory>
#include <set>
#include <system_error>
#include <utility>

#include <fmt/format.h>
#include <fmt/ranges.h>
#include <unistd.h>

#include <tavo/config/environment.h>
#include <tavo/config/fault.h>

namespace TAVO::config {

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

[[noreturn]] void refuse(const std::string& path) {
    throw Fault(fmt::format("cannot read '{}': {}", path, std::generic_category().message(errno)));
}

std::string readFile(const std::string& path) {
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "rbe"), std::fclose);
    if (!file)
        refuse(path);
    std::string content;
    std::array<char, 65536> part{};
    while (const auto got = std::fread(part.data(), 1, part.size(), file.get()))
        content.append(part.data(), got);
    if (std::ferror(file.get()) != 0)
        refuse(path);
    return content;
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

void refuseFaults(const ConfigFile& config) {
    if (config.faults.empty())
        return;
    const auto& first = config.faults.front();
    const auto others = config.faults.size() - 1;
    throw Fault(fmt::format("{}: {}{}", config.textOf(first.place), first.message,
                            others == 0 ? "" : fmt::format(" ('tavo config check' shows {} more)", others)));
}

std::vector<ConfigDevice> devicesInGroup(const ConfigFile& config, const std::string& group) {
    std::vector<ConfigDevice> devices;
    std::set<std::string> groups;
    for (const auto& device : config.devices) {
        const auto itsGroups = config.groupsOf(device);
        groups.insert(itsGroups.begin(), itsGroups.end());
        if (group.empty() || std::find(itsGroups.begin(), itsGroups.end(), group) != itsGroups.end())
            devices.push_back(device);
    }
    if (!group.empty() && devices.empty())
        throw Fault(groups.empty()
                        ? fmt::format("no group '{}'; the configuration file has no groups", group)
                        : fmt::format("no group '{}'; there are: {}", group, fmt::join(groups, ", ")));
    return devices;
}

} // namespace TAVO::config
