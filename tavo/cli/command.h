#pragma once

#include <concepts>
#include <functional>
#include <memory>
#include <string>
#include <utility>

#include <tavo/cli/option_list.h>

namespace TAVO::cli {

class Output;
class Session;

using Action = std::function<void(Session&, Output&)>;

/// A command with a place for its options.
struct BoundCommand {
    OptionList options;
    /// Where the --object of its group goes; null where it takes none.
    std::string* object = nullptr;
    /// Carries the command out, with what the options then hold. Keeps them alive.
    Action run;
};

/// One command of the tool. It can be looked at and parsed without running anything.
struct Command {
    /// Its group and its name, such as "relay get".
    std::string path;
    /// What it does, in one line.
    std::string summary;
    /// Makes the place anew each time.
    std::function<BoundCommand()> bind;
    /// More help, below the options.
    std::string footer = {};
};

/// Commands whose paths begin alike, and the option that they have in common.
struct CommandGroup {
    std::string path;
    std::string summary;
    /// The help of an option --object, which stands before or after the name of any command of the group and
    /// of groups inside it; empty where there is none.
    std::string object = {};
};

/// The options of a command whose group has an --object: what derives from this gets it.
struct ObjectOptions {
    /// The full name, empty for the only one that suits.
    std::string object;

    void describe(OptionList&) {}
};

/// A command with options of its own, which a struct holds and tells by its operation `describe`.
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

/// A command without options.
inline Command command(std::string path, std::string summary, void (*run)(Session&, Output&)) {
    return {std::move(path), std::move(summary), [run] { return BoundCommand{{}, nullptr, run}; }};
}

} // namespace TAVO::cli
