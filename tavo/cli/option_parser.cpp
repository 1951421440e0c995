#include <tavo/cli/option_parser.h>

#include <cctype>
#include <cmath>
#include <cstdlib>
#include <map>
#include <type_traits>
#include <variant>

#include <CLI/CLI.hpp>
#include <fmt/format.h>

namespace TAVO::cli {

namespace {

/// CLI::Range accepts "nan", which is neither below nor above anything.
CLI::Validator refusingNan(const CLI::Range& range) {
    const auto check = [range](std::string& text) {
        if (std::isnan(std::strtod(text.c_str(), nullptr)))
            return "Value " + text + " is not a number";
        return range(text);
    };
    return {check, range.get_description()};
}

CLI::Validator checkOf(const NumberLimits& limits) {
    return std::visit(
        [&limits]<class Number>(const Interval<Number>& interval) -> CLI::Validator {
            CLI::Range range(interval.lowest, interval.highest, limits.name);
            if constexpr (std::is_floating_point_v<Number>)
                return refusingNan(range);
            else
                return range;
        },
        limits.interval);
}

/// CLI11 takes a unit alone for one of that unit.
std::string refuseWithoutNumber(const std::string& text) {
    return !text.empty() && std::isdigit(static_cast<unsigned char>(text.front())) != 0
               ? ""
               : fmt::format("'{}' does not begin with a number", text);
}

void takeDurations(CLI::Option& option) {
    option
        .transform(CLI::AsNumberWithUnit(
            std::map<std::string, double>{{"ms", 0.001}, {"s", 1}, {"m", 60}, {"h", 3600}},
            CLI::AsNumberWithUnit::CASE_SENSITIVE))
        ->transform(CLI::Validator(refuseWithoutNumber, ""));
}

CLI::Option& add(CLI::App& app, const Option& option) {
    return *std::visit(
        [&]<class Target>(Target* target) {
            if constexpr (std::is_same_v<Target, bool>)
                return app.add_flag(option.names, *target, option.help);
            else
                return app.add_option(option.names, *target, option.help);
        },
        option.target);
}

void applyRules(CLI::Option& added, const Option& option) {
    const auto& rules = option.rules;
    added.required(rules.required);
    if (option.kind() == ValueKind::duration)
        takeDurations(added);
    if (!rules.choices.empty())
        added.check(CLI::IsMember(rules.choices));
    if (rules.limits)
        added.check(checkOf(*rules.limits));
    if (rules.showsDefault)
        added.capture_default_str();
    if (!rules.valueName.empty())
        added.type_name(rules.valueName);
    if (!rules.heading.empty())
        added.group(rules.heading);
}

} // namespace

void addOptions(CLI::App& app, const OptionList& options) {
    std::map<std::string, CLI::Option*> added;
    for (const auto& option : options) {
        added[option.names] = &add(app, option);
        applyRules(*added[option.names], option);
    }
    for (const auto& option : options) {
        for (const auto& other : option.rules.needs)
            added[option.names]->needs(added.at(other));
        for (const auto& other : option.rules.excludes)
            added[option.names]->excludes(added.at(other));
    }
}

} // namespace TAVO::cli
