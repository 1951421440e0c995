#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

/// The options of a command as data, from which the parser and the help are built.
namespace TAVO::cli {

/// The kind of value an option takes.
enum class ValueKind {
    flag, ///< no value: the option is given or not
    text,
    file,     ///< the path of a file
    integer,  ///< decimal, hexadecimal after 0x, or octal after 0
    number,   ///< with or without a fraction
    duration, ///< a number with ms, s, m or h, in seconds
};

/// What a value names.
enum class NameKind {
    object,   ///< on the device
    relay,    ///< on the device
    method,   ///< of an object on the device, "OBJECT.METHOD"
    device,   ///< of the configuration file
    group,    ///< of devices, in the configuration file
    topology, ///< of the simulator
    command,  ///< of the tool, or a group of commands; each value is one word of its path
};

/// Where to store the value. Holds the default until one is given.
using OptionTarget =
    std::variant<bool*, std::string*, std::int32_t*, std::uint32_t*, double*, std::optional<std::string>*,
                 std::optional<std::uint16_t>*, std::optional<std::int32_t>*, std::optional<std::uint32_t>*,
                 std::optional<double>*, std::vector<bool>*, std::vector<std::string>*,
                 std::vector<std::uint32_t>*>;

/// The numbers from `lowest` to `highest`, in the type used to compare them.
template <class Number>
struct Interval {
    Number lowest;
    Number highest;
};

/// The numbers an option accepts.
struct NumberLimits {
    std::variant<Interval<std::int32_t>, Interval<std::uint32_t>, Interval<double>> interval;
    /// Replaces both ends in the help.
    std::string name = {};
    /// Replaces both ends in messages.
    std::string bounds = {};
};

template <class Number>
NumberLimits between(Number lowest, Number highest) {
    return {Interval<Number>{lowest, highest}};
}
/// Above 0.
NumberLimits positive();
/// 0 and above.
NumberLimits notNegative();

/// Everything about an option besides its names and its help.
struct OptionRules {
    bool required = false;
    /// Whether the help shows the default.
    bool showsDefault = false;
    /// Needed if the target's type does not imply it.
    std::optional<ValueKind> kind = {};
    /// All valid values, if they can be listed.
    std::vector<std::string> choices = {};
    std::optional<NumberLimits> limits = {};
    /// Set if the value, or the first of several, is such a name.
    std::optional<NameKind> nameKind = {};
    /// Replaces the type of the value in the help.
    std::string valueName = {};
    /// Replaces the usual heading in the help.
    std::string heading = {};
    /// Options of the same list that this one requires, or excludes.
    std::vector<std::string> needs = {};
    std::vector<std::string> excludes = {};
};

/// One option, or one positional argument.
struct Option {
    /// "--baud" or "-y,--yes"; for an argument its bare name.
    std::string names;
    std::string help;
    OptionTarget target;
    OptionRules rules;

    bool isArgument() const { return !names.starts_with('-'); }
    /// Whether it takes any number of values.
    bool isRepeated() const;
    ValueKind kind() const;
};

/// The options of one command, in the order of the help.
class OptionList {
public:
    /// @param target must outlive the list and every parser built from it.
    template <class Target>
    void add(std::string names, Target& target, std::string help, OptionRules rules = {}) {
        options_.push_back({std::move(names), std::move(help), &target, std::move(rules)});
    }

    auto begin() const { return options_.begin(); }
    auto end() const { return options_.end(); }

private:
    std::vector<Option> options_;
};

} // namespace TAVO::cli
