#pragma once

#include <concepts>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <tavo/cli/option_list.h>

namespace TAVO::cli {

class Output;
class Session;
struct ConnectionOptions;

using Action = std::function<void(Session&, Output&)>;
/// What needs no device; it gets what the arguments say about the connection.
using LocalAction = std::function<void(const ConnectionOptions&, Output&)>;

/// A command with storage for its options.
struct BoundCommand {
    OptionList options;
    /// Where to store the --object of its group; null if the command takes none.
    std::string* object = nullptr;
    /// Runs the command with the current option values. Keeps the storage alive. Empty for a command that
    /// needs no device.
    Action run;
    /// The same for such a command.
    LocalAction runLocally = {};
    /// Whether the option values call for `runLocally`, where there are both. Empty for always.
    std::function<bool()> isLocal = {};
};

/// One command of the tool. Describing and parsing it runs nothing.
struct Command {
    /// Group and name, such as "relay get".
    std::string path;
    /// What it does, in one line.
    std::string summary;
    /// Makes new storage on each call.
    std::function<BoundCommand()> bind;
    /// More help, below the options.
    std::string footer = {};
    /// Lines that a user might type. commandList() sets them.
    std::vector<std::string> examples = {};
    /// For programs only: neither help nor completion tell of it.
    bool isHidden = false;
};

/// Commands whose paths share a prefix, and the option they have in common.
struct CommandGroup {
    std::string path;
    std::string summary;
    /// Help text of the group's --object option; empty if it has none. The option may stand before or after
    /// the name of any command in the group or its subgroups.
    std::string object = {};
};

/// Base of the options of every command whose group has an --object.
struct ObjectOptions {
    /// Full name; empty for the only object that fits.
    std::string object;

    void describe(OptionList&) {}
};

/// A command with options: a struct holds them, and its `describe` lists them.
///
/// @code
/// struct DimOptions {
///     std::int32_t percent = 100;
///     void describe(OptionList& list) { list.add("percent", percent, "How bright"); }
/// };
/// void dim(Session& session, Output& output, const DimOptions& options);
/// ... command("lamp dim", "Set the brightness", dim) ...
/// @endcode
template <class Options>
Command command(std::string path, std::string summary, void (*run)(Session&, Output&, const Options&),
                std::string footer = {}) {
    const auto bind = [run] {
        const auto options = std::make_shared<Options>();
        BoundCommand bound;
        options->describe(bound.options);
        if constexpr (std::derived_from<Options, ObjectOptions>)
            bound.object = &options->object;
        bound.run = [options, run](Session& session, Output& output) { run(session, output, *options); };
        return bound;
    };
    return {std::move(path), std::move(summary), bind, std::move(footer)};
}

/// A command with options that needs no device.
template <class Options>
Command command(std::string path, std::string summary,
                void (*run)(const ConnectionOptions&, Output&, const Options&)) {
    const auto bind = [run] {
        const auto options = std::make_shared<Options>();
        BoundCommand bound;
        options->describe(bound.options);
        bound.runLocally = [options, run](const ConnectionOptions& given, Output& output) {
            run(given, output, *options);
        };
        return bound;
    };
    return {std::move(path), std::move(summary), bind};
}

/// A command with options of which some do without a device: Options::isLocal() tells.
template <class Options>
Command command(std::string path, std::string summary, void (*run)(Session&, Output&, const Options&),
                void (*runLocally)(Output&, const Options&)) {
    const auto bind = [run, runLocally] {
        const auto options = std::make_shared<Options>();
        BoundCommand bound;
        options->describe(bound.options);
        if constexpr (std::derived_from<Options, ObjectOptions>)
            bound.object = &options->object;
        bound.run = [options, run](Session& session, Output& output) { run(session, output, *options); };
        bound.runLocally = [options, runLocally](const ConnectionOptions&, Output& output) {
            runLocally(output, *options);
        };
        bound.isLocal = [options] { return options->isLocal(); };
        return bound;
    };
    return {std::move(path), std::move(summary), bind};
}

/// A command without options.
inline Command command(std::string path, std::string summary, void (*run)(Session&, Output&)) {
    return {std::move(path), std::move(summary), [run] { return BoundCommand{{}, nullptr, run, {}}; }};
}

/// A command without options that needs no device.
inline Command command(std::string path, std::string summary,
                       void (*run)(const ConnectionOptions&, Output&)) {
    return {std::move(path), std::move(summary), [run] { return BoundCommand{{}, nullptr, {}, run}; }};
}

} // namespace TAVO::cli
