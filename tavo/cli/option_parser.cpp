#include <tavo/cli/option_parser.h>

#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>
#include <map>
#include <stdexcept>
#include <type_traits>
#include <variant>

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include <tavo/cli/values/duration.h>
#include <tavo/cli/values/whole_number.h>

namespace TAVO::cli {

namespace {

template <class Target>
struct ValueOf {
    using Type = Target;
};
template <class Target>
struct ValueOf<std::optional<Target>> : ValueOf<Target> {};
template <class Target>
struct ValueOf<std::vector<Target>> : ValueOf<Target> {};

/// All numbers that the target can hold.
struct Bounds {
    std::int64_t lowest;
    std::uint64_t highest;
};

template <class Target>
Bounds boundsOfTarget(const Target*) {
    using Value = typename ValueOf<Target>::Type;
    if constexpr (std::is_integral_v<Value>)
        return {std::int64_t{std::numeric_limits<Value>::min()},
                std::uint64_t{std::numeric_limits<Value>::max()}};
    else
        return {};
}

Bounds boundsOf(const OptionTarget& target) {
    return std::visit([](const auto* value) { return boundsOfTarget(value); }, target);
}

/// The whole numbers within both.
Bounds operator&(Bounds bounds, const NumberLimits& limits) {
    std::visit(
        [&bounds](const auto& interval) {
            if (static_cast<double>(interval.lowest) > static_cast<double>(bounds.lowest))
                bounds.lowest = static_cast<std::int64_t>(std::ceil(static_cast<double>(interval.lowest)));
            if (static_cast<double>(interval.highest) < static_cast<double>(bounds.highest))
                bounds.highest = static_cast<std::uint64_t>(interval.highest);
        },
        limits.interval);
    return bounds;
}

[[noreturn]] void refuseRange(const std::string& text, const std::string& bounds) {
    throw std::invalid_argument(fmt::format("Value {} not in range {}", text, bounds));
}

/// The number as the parser reads it, which takes no octal numbers.
std::string checkedWholeNumber(const std::string& text, const Bounds& bounds) {
    const auto number = parseWholeNumber(text);
    if (!number.isWithin(bounds.lowest, bounds.highest))
        refuseRange(text, boundsText(bounds.lowest, bounds.highest, text));
    return fmt::format("{}{}", number.negative ? "-" : "", number.magnitude);
}

double parseNumber(const std::string& text) {
    double number = 0;
    const auto* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    if (stop != end || error != std::errc() || std::isnan(number))
        throw std::invalid_argument(fmt::format("Value {} is not a number", text));
    return number;
}

/// @param shown how to write a bound.
template <class Shown>
std::string boundsText(const NumberLimits& limits, Shown shown, const char* between = " to ") {
    if (!limits.bounds.empty())
        return limits.bounds;
    return std::visit(
        [&](const auto& interval) {
            return shown(static_cast<double>(interval.lowest)) + between +
                   shown(static_cast<double>(interval.highest));
        },
        limits.interval);
}

bool isWithin(double number, const NumberLimits& limits) {
    return std::visit(
        [number](const auto& interval) {
            return number >= static_cast<double>(interval.lowest) &&
                   number <= static_cast<double>(interval.highest);
        },
        limits.interval);
}

std::string checkedNumber(const std::string& text, const Option& option) {
    const bool isDuration = option.kind() == ValueKind::duration;
    const auto number = isDuration ? parseDuration(text) : parseNumber(text);
    const auto shown = [isDuration](double bound) {
        return isDuration ? durationText(bound) : fmt::format("{}", bound);
    };
    if (option.rules.limits && !isWithin(number, *option.rules.limits))
        refuseRange(text, boundsText(*option.rules.limits, shown));
    return fmt::format("{}", number);
}

/// What the help says about the limits.
std::string limitsText(const Option& option) {
    if (!option.rules.limits)
        return "";
    const auto& limits = *option.rules.limits;
    if (!limits.name.empty())
        return limits.name;
    if (option.kind() == ValueKind::duration)
        return "in [" + boundsText(limits, durationText, " - ") + "]";
    const auto* type = option.kind() == ValueKind::integer ? "INT" : "FLOAT";
    return std::visit(
        [type](const auto& interval) {
            return fmt::format("{} in [{} - {}]", type, interval.lowest, interval.highest);
        },
        limits.interval);
}

/// Reads numbers and durations in the tool's own way, and passes them on in the parser's.
CLI::Validator reading(const Option& option) {
    const auto bounds =
        option.rules.limits ? boundsOf(option.target) & *option.rules.limits : boundsOf(option.target);
    const auto read = [option, bounds](std::string& text) -> std::string {
        try {
            text = option.kind() == ValueKind::integer ? checkedWholeNumber(text, bounds)
                                                       : checkedNumber(text, option);
            return "";
        } catch (const std::invalid_argument& error) {
            return error.what();
        }
    };
    return {read, limitsText(option)};
}

bool isNumber(const Option& option) {
    const auto kind = option.kind();
    const bool levels = std::holds_alternative<std::vector<bool>*>(option.target);
    return !levels &&
           (kind == ValueKind::integer || kind == ValueKind::number || kind == ValueKind::duration);
}

template <class Target>
CLI::Option* addTarget(CLI::App& app, const Option& option, Target* target) {
    if constexpr (std::is_same_v<Target, bool>)
        return app.add_flag(option.names, *target, option.help);
    else
        return app.add_option(option.names, *target, option.help);
}

CLI::Option& add(CLI::App& app, const Option& option) {
    return *std::visit([&](auto* target) { return addTarget(app, option, target); }, option.target);
}

void showDefault(CLI::Option& added, const Option& option) {
    auto* const* seconds = std::get_if<double*>(&option.target);
    if (option.kind() == ValueKind::duration && seconds != nullptr)
        added.default_str(durationText(**seconds));
    else
        added.capture_default_str();
}

void applyRules(CLI::Option& added, const Option& option) {
    const auto& rules = option.rules;
    added.required(rules.required);
    if (isNumber(option))
        added.transform(reading(option));
    if (!rules.choices.empty())
        added.check(CLI::IsMember(rules.choices));
    if (rules.showsDefault)
        showDefault(added, option);
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
