#include <tavo/cli/option_text.h>

#include <cctype>
#include <sstream>
#include <type_traits>
#include <variant>

#include <fmt/format.h>
#include <fmt/ranges.h>

namespace TAVO::cli {

namespace {

std::string upperCase(std::string text) {
    for (auto& c : text)
        c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return text;
}

template <class Value>
std::string defaultText(const Value* value) {
    if constexpr (std::is_arithmetic_v<Value> || std::is_same_v<Value, std::string>)
        return fmt::format("{}", *value);
    else
        return "";
}

} // namespace

std::vector<std::string> namesOf(const Option& option) {
    std::vector<std::string> names;
    std::istringstream stream(option.names);
    for (std::string name; std::getline(stream, name, ',');)
        names.push_back(name);
    return names;
}

std::string valueText(const Option& option) {
    if (!option.rules.valueName.empty())
        return option.rules.valueName;
    if (!option.rules.choices.empty())
        return fmt::format("{}", fmt::join(option.rules.choices, "|"));
    if (option.isArgument())
        return upperCase(option.names);
    switch (option.kind()) {
    case ValueKind::flag:
        return "";
    case ValueKind::file:
        return "FILE";
    case ValueKind::integer:
    case ValueKind::number:
        return "NUMBER";
    case ValueKind::duration:
        return "DURATION";
    case ValueKind::text:
        break;
    }
    return "NAME";
}

std::string limitsText(const Option& option) {
    std::vector<std::string> parts;
    if (option.rules.limits)
        std::visit(
            [&parts](const auto& interval) {
                if constexpr (std::is_integral_v<decltype(interval.lowest)>)
                    parts.push_back(fmt::format("{} to {}", interval.lowest, interval.highest));
            },
            option.rules.limits->interval);
    if (option.rules.showsDefault)
        parts.push_back("default " +
                        std::visit([](const auto* value) { return defaultText(value); }, option.target));
    return parts.empty() ? "" : fmt::format(" ({})", fmt::join(parts, ", "));
}

std::string usageOf(const Option& argument) {
    const auto text = valueText(argument) + (argument.isRepeated() ? " ..." : "");
    return argument.rules.required ? text : "[" + text + "]";
}

} // namespace TAVO::cli
