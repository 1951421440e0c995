#include <tavo/cli/commands/commands.h>

#include <algorithm>
#include <string>
#include <vector>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <tavo/cli/config/effective.h>
#include <tavo/cli/output.h>
#include <tavo/cli/password.h>
#include <tavo/cli/values/duration.h>

namespace TAVO::cli {

namespace {

struct GroupOptions {
    std::string group;

    void describe(OptionList& list) {
        list.add("group", group, "Only the devices of this group", {.nameKind = NameKind::group});
    }
};

void listHosts(const ConnectionOptions& given, Output& output, const GroupOptions& options) {
    const auto config = readConfig();
    requireSound(config);
    const auto devices = devicesOf(config, options.group);
    output.show(
        [&](JsonWriter& json) {
            json.array([&] {
                for (const auto& device : devices) {
                    auto named = given;
                    named.host = device.name;
                    const auto connection = effectiveOptions(named, config).connection;
                    json.write({{"groups", config.groupsOf(device)},
                                {"host", connection.host},
                                {"name", device.name},
                                {"port", *connection.port}});
                }
            });
        },
        [&](TextWriter& text) {
            for (const auto& device : devices)
                text.print("{}\n", device.name);
        });
}

const char* nameOf(ValueSource::Kind kind) {
    switch (kind) {
    case ValueSource::Kind::builtIn:
        break;
    case ValueSource::Kind::option:
        return "option";
    case ValueSource::Kind::environment:
        return "environment";
    case ValueSource::Kind::file:
        return "file";
    }
    return "default";
}

std::string shown(const EffectiveValue& value) {
    if (value.value.is_null())
        return "none";
    if (value.value.is_boolean())
        return value.value.get<bool>() ? "yes" : "no";
    if (value.name == "timeout")
        return value.value == 0.0 ? "none" : durationText(value.value.get<double>());
    return value.value.is_string() ? value.value.get<std::string>() : value.value.dump();
}

std::string shown(const ValueSource& source) {
    if (source.kind == ValueSource::Kind::builtIn)
        return "default";
    if (source.kind == ValueSource::Kind::environment)
        return "environment variable " + source.name;
    return source.kind == ValueSource::Kind::option ? "option " + source.name : source.name;
}

nlohmann::json documentOf(const EffectiveValue& value) {
    nlohmann::json document{{"value", value.value}, {"from", nameOf(value.source.kind)}};
    if (!value.source.name.empty())
        document["source"] = value.source.name;
    return document;
}

nlohmann::json orNull(const std::string& text) {
    return text.empty() ? nlohmann::json() : nlohmann::json(text);
}

void showConfig(const ConnectionOptions& given, Output& output) {
    const auto config = given.simulated ? ConfigFile() : readConfig();
    requireSound(config);
    const auto effective = effectiveOptions(given, config);
    output.show(
        [&](JsonWriter& json) {
            nlohmann::json values = nlohmann::json::object();
            for (const auto& value : effective.values)
                values[value.name] = documentOf(value);
            json.write({{"device", orNull(effective.device.value_or(""))},
                        {"exists", config.exists},
                        {"file", orNull(config.path)},
                        {"values", values}});
        },
        [&](TextWriter& text) {
            text.print("file           {}{}\n", config.path.empty() ? "none" : config.path,
                       config.exists || config.path.empty() ? "" : " (there is none)");
            text.print("device         {}\n", effective.device.value_or("none"));
            for (const auto& value : effective.values)
                text.print("{:<13}  {:<24}  {}\n", value.name, shown(value), shown(value.source));
        });
}

/// The password files that are missing, and, where `strict`, those that others may read.
void addPasswordFaults(ConfigFile& config, bool strict, Output& output) {
    std::vector<ConfigSection> sections{config.defaults};
    for (const auto& device : config.devices)
        sections.push_back(device.section);
    for (const auto& section : sections) {
        if (!section.passwordFile)
            continue;
        const auto& [path, place] = *section.passwordFile;
        const auto problem = problemOfPasswordFile(path);
        if (!problem.text.empty() && (problem.isFatal || strict))
            config.faults.push_back({place, fmt::format("password-file: {}", problem.text)});
        else if (!problem.text.empty())
            output.warn(fmt::format("{}: password-file: {}", config.textOf(place), problem.text));
    }
    std::stable_sort(config.faults.begin(), config.faults.end(),
                     [](const auto& one, const auto& other) { return one.place.line < other.place.line; });
}

void checkConfig(const ConnectionOptions& given, Output& output) {
    auto config = readConfig();
    requireOwnConfig(config, given.strict, [&](std::string_view warning) { output.warn(warning); });
    addPasswordFaults(config, given.strict, output);
    output.show(
        [&](JsonWriter& json) {
            nlohmann::json faults = nlohmann::json::array();
            for (const auto& fault : config.faults)
                faults.push_back(
                    {{"line", fault.place.line}, {"column", fault.place.column}, {"message", fault.message}});
            json.write({{"devices", config.devices.size()},
                        {"exists", config.exists},
                        {"faults", faults},
                        {"file", orNull(config.path)}});
        },
        [&](TextWriter& text) {
            for (const auto& fault : config.faults)
                text.print("{}: {}\n", config.textOf(fault.place), fault.message);
            if (!config.exists)
                text.print("there is no configuration file{}{}\n", config.path.empty() ? "" : " ",
                           config.path);
            else if (config.faults.empty())
                text.print("{}: no faults, {} devices\n", config.path, config.devices.size());
        });
    if (!config.faults.empty())
        throw Failure(ExitCode::usage, fmt::format("{}: {} fault{}", config.path, config.faults.size(),
                                                   config.faults.size() == 1 ? "" : "s"));
}

} // namespace

std::vector<Command> configCommands() {
    return {
        command("hosts", "List the devices of the configuration file, one a line", listHosts),
        command("config show", "Show what holds, and where each value comes from", showConfig),
        command("config check", "Name file, line and column of every fault", checkConfig),
    };
}

} // namespace TAVO::cli
