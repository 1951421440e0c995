#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

/// What a user can say to a command, as data: the parser and its help follow from it, and whoever else wants
/// to tell it can walk it.
namespace TAVO::cli {

/// What the values of an option are.
enum class ValueKind {
    flag, ///< none: the option is given or not
    text,
    file,     ///< the path of a file
    integer,  ///< decimal, hexadecimal after 0x, or octal after 0
    number,   ///< with or without a fraction
    duration, ///< a number and ms, s, m or h, as seconds
};

/// Where the value goes. Until one is given it holds what stands for it.
using OptionTarget =
    std::variant<bool*, std::string*, std::int32_t*, std::uint32_t*, double*, std::optional<std::string>*,
                 std::optional<std::uint16_t>*, std::optional<std::int32_t>*, std::optional<std::uint32_t>*,
                 std::optional<double>*, std::vector<bool>*, std::vector<std::string>*,
                 std::vector<std::uint32_t>*>;

/// The numbers from `lowest` to `highest`, of the type in which they are compared.
template <class Number>
struct Interval {
    Number lowest;
    Number highest;
};

/// Which numbers an option takes.
struct NumberLimits {
    std::variant<Interval<std::int32_t>, Interval<std::uint32_t>, Interval<double>> interval;
    /// What the help calls them in place of both ends.
    std::string name = {};
};

template <class Number>
NumberLimits between(Number lowest, Number highest) {
    return {Interval<Number>{lowest, highest}};
}
/// Above 0.
NumberLimits positive();
/// 0 and above.
NumberLimits notNegative();

/// What holds for an option beyond its names and its help.
struct OptionRules {
    bool required = false;
    /// Whether the help shows what stands for a value that is not given.
    bool showsDefault = false;
    /// Where the type of the target does not tell it.
    std::optional<ValueKind> kind = {};
    /// All values that there are, where they can be listed.
    std::vector<std::string> choices = {};
    std::optional<NumberLimits> limits = {};
    /// What the help calls a value in place of its type.
    std::string valueName = {};
    /// Under which the help shows the option, in place of the usual heading.
    std::string heading = {};
    /// Options of the same list without which, or beside which, this one cannot be given.
    std::vector<std::string> needs = {};
    std::vector<std::string> excludes = {};
};

/// One option, or one argument that is known by its place.
struct Option {
    /// "--baud" or "-y,--yes"; the bare name of an argument.
    std::string names;
    std::string help;
    OptionTarget target;
    OptionRules rules;

    bool isArgument() const { return !names.starts_with('-'); }
    /// Whether it takes any number of values.
    bool isRepeated() const;
    ValueKind kind() const;
};

/// The options of one command, in the order of its help.
class OptionList {
public:
    /// @param target outlives the list and whoever parses by it.
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
