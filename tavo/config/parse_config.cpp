#include <tavo/config/config_file.h>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <stdexcept>
#include <string>
#include <utility>

#include <fmt/format.h>
#include <fmt/ranges.h>
#include <toml++/toml.h>

#include <tavo/config/duration.h>

namespace TAVO::config {

namespace {

constexpr double longestTimeout = 1e6;

ConfigPlace placeOf(const toml::source_region& region) { return {region.begin.line, region.begin.column}; }

const char* kindOf(const toml::node& node) {
    switch (node.type()) {
    case toml::node_type::table:
        return "a table";
    case toml::node_type::array:
        return "an array";
    case toml::node_type::string:
        return "a string";
    case toml::node_type::integer:
        return "an integer";
    case toml::node_type::floating_point:
        return "a floating-point number";
    case toml::node_type::boolean:
        return "true or false";
    default:
        return "a date or a time";
    }
}

[[noreturn]] void refuseKind(const toml::node& node, const char* wanted) {
    throw std::invalid_argument(fmt::format("must be {}, not {}", wanted, kindOf(node)));
}

std::string textIn(const toml::node& node, const char* wanted = "a string") {
    if (!node.is_string())
        refuseKind(node, wanted);
    auto text = **node.as_string();
    if (text.empty())
        throw std::invalid_argument("must not be empty");
    if (std::any_of(text.begin(), text.end(), [](char c) { return c == '\n' || c == '\0'; }))
        throw std::invalid_argument("must be one line");
    return text;
}

std::uint16_t portIn(const toml::node& node) {
    constexpr std::int64_t highest = 65535;
    if (!node.is_integer())
        refuseKind(node, "an integer from 1 to 65535");
    const auto number = **node.as_integer();
    if (number < 1 || number > highest)
        throw std::invalid_argument(fmt::format("Value {} not in range 1 to {}", number, highest));
    return static_cast<std::uint16_t>(number);
}

bool flagIn(const toml::node& node) {
    if (!node.is_boolean())
        refuseKind(node, "true or false");
    return **node.as_boolean();
}

double durationIn(const toml::node& node) {
    const bool isNumber = node.is_number();
    const auto seconds =
        isNumber ? node.value<double>().value_or(0)
                 : parseDuration(textIn(node, "a duration, such as \"10s\", or a number of seconds"));
    if (!(seconds == 0 || (seconds >= 0.001 && seconds <= longestTimeout)))
        throw std::invalid_argument(fmt::format("Value {} not in range 1ms to {}; 0 is no limit",
                                                isNumber ? fmt::format("{}", seconds) : textIn(node),
                                                durationText(longestTimeout)));
    return seconds;
}

/// Names that can stand alone on a line and in a command line.
bool isPlainName(std::string_view name) {
    const auto isPlain = [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '.' ||
               c == '_' || c == '-';
    };
    return !name.empty() && name.front() != '-' && std::all_of(name.begin(), name.end(), isPlain);
}

void requirePlainName(std::string_view name) {
    if (!isPlainName(name))
        throw std::invalid_argument(fmt::format(
            "the name '{}' may only have letters, digits, '.', '_' and '-', and no '-' first", name));
}

std::vector<std::string> namesIn(const toml::node& node) {
    std::vector<std::string> names;
    if (const auto* array = node.as_array()) {
        for (const auto& element : *array)
            names.push_back(textIn(element, "a string or an array of strings"));
    } else {
        names.push_back(textIn(node, "a string or an array of strings"));
    }
    for (const auto& name : names)
        requirePlainName(name);
    return names;
}

/// Puts what a key states into its place in the section.
using Take = std::function<void(ConfigSection&, const toml::node&)>;

template <class Value, class Read>
Take taking(std::optional<Configured<Value>> ConfigSection::*member, Read read) {
    return [member, read](ConfigSection& section, const toml::node& node) {
        section.*member = Configured<Value>{read(node), placeOf(node.source())};
    };
}

class ConfigReader {
public:
    ConfigReader(ConfigFile& config, std::string home)
        : config_(config)
        , home_(std::move(home)) {}

    void read(const toml::table& root) {
        for (const auto& [key, node] : root)
            attempt(placeOf(key.source()), [&, &key = key, &node = node] { readSection(key, node); });
        const auto earlier = [](const auto& one, const auto& other) {
            return std::pair(one.place.line, one.place.column) <
                   std::pair(other.place.line, other.place.column);
        };
        std::stable_sort(config_.faults.begin(), config_.faults.end(), earlier);
        std::stable_sort(places_.begin(), places_.end(), earlier);
        for (auto& device : places_)
            config_.devices.push_back(std::move(device.value));
    }

private:
    struct Key {
        const char* name;
        Take take;
    };

    template <class Action>
    void attempt(ConfigPlace place, Action action) {
        try {
            action();
        } catch (const std::invalid_argument& error) {
            config_.faults.push_back({place, error.what()});
        }
    }

    void readSection(const toml::key& key, const toml::node& node) {
        const std::string name(key.str());
        const auto* table = node.as_table();
        if (table == nullptr)
            throw std::invalid_argument(
                fmt::format("'{}' stands outside of a section; [defaults] is the one for all devices", name));
        if (name == "defaults") {
            config_.defaults = sectionIn(name, *table);
            return;
        }
        requirePlainName(name);
        places_.push_back({{name, sectionIn(name, *table)}, placeOf(key.source())});
    }

    ConfigSection sectionIn(const std::string& name, const toml::table& table) {
        ConfigSection section;
        for (const auto& [key, node] : table)
            readKey(section, name, key, node);
        if (section.host && section.port && section.host->value.port &&
            section.host->value.port != section.port->value)
            config_.faults.push_back({section.port->place, fmt::format("port: 'host' names another one, {}",
                                                                       *section.host->value.port)});
        return section;
    }

    void readKey(ConfigSection& section, const std::string& sectionName, const toml::key& key,
                 const toml::node& node) {
        const std::string name(key.str());
        for (const auto& known : keys_)
            if (name == known.name) {
                attempt(placeOf(node.source()), [&] {
                    try {
                        known.take(section, node);
                    } catch (const std::invalid_argument& error) {
                        throw std::invalid_argument(fmt::format("{}: {}", name, error.what()));
                    }
                });
                return;
            }
        config_.faults.push_back({placeOf(key.source()), unknownText(sectionName, name, node)});
    }

    std::string unknownText(const std::string& section, const std::string& name,
                            const toml::node& node) const {
        if (name == "password")
            return "a password must not stand here: put it in the first line of a file that only you can "
                   "read, "
                   "and name that with password-file";
        if (node.is_table())
            return fmt::format("unknown key '{}'; a name with a dot needs quotes: [\"{}.{}\"]", name, section,
                               name);
        std::vector<const char*> names;
        for (const auto& key : keys_)
            names.push_back(key.name);
        return fmt::format("unknown key '{}'; there are: {}", name, fmt::join(names, ", "));
    }

    // cppcheck-suppress unusedPrivateFunction ; keys_ uses it
    std::string passwordFileIn(const toml::node& node) const {
        const auto text = textIn(node);
        if (text.starts_with("~/") && !home_.empty())
            return home_ + text.substr(1);
        return (std::filesystem::path(config_.path).parent_path() / text).string();
    }

    ConfigFile& config_;
    std::string home_;
    std::vector<Configured<ConfigDevice>> places_;
    const std::vector<Key> keys_{
        {"host",
         taking(&ConfigSection::host, [](const toml::node& node) { return parseHostAddress(textIn(node)); })},
        {"port", taking(&ConfigSection::port, portIn)},
        {"user", taking(&ConfigSection::user, [](const toml::node& node) { return textIn(node); })},
        {"password-file", taking(&ConfigSection::passwordFile,
                                 [this](const toml::node& node) { return passwordFileIn(node); })},
        {"via", taking(&ConfigSection::via, [](const toml::node& node) { return textIn(node); })},
        {"secure", taking(&ConfigSection::secure, flagIn)},
        {"timeout", taking(&ConfigSection::timeout, durationIn)},
        {"group", taking(&ConfigSection::groups, namesIn)},
    };
};

} // namespace

ConfigFile parseConfig(std::string path, std::string_view content, const std::string& home) {
    ConfigFile config;
    config.path = std::move(path);
    config.exists = true;
    try {
        const toml::table root = toml::parse(content, config.path);
        ConfigReader(config, home).read(root);
    } catch (const toml::parse_error& error) {
        config.faults.push_back({placeOf(error.source()), std::string(error.description())});
    }
    return config;
}

} // namespace TAVO::config
