#include <tavo/config/duration.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <stdexcept>

#include <fmt/format.h>

namespace TAVO::config {

namespace {

struct Unit {
    std::string_view name;
    double seconds;
};

constexpr Unit units[] = {{"h", 3600}, {"m", 60}, {"s", 1}, {"ms", 0.001}};

[[noreturn]] void refuse(std::string_view text, const char* why) {
    throw std::invalid_argument(
        fmt::format("'{}' {}; a duration is 500ms, 10s, 2m, 1h or a number of seconds", text, why));
}

double secondsOf(std::string_view unitName, std::string_view text) {
    if (unitName.empty())
        return 1;
    for (const auto& unit : units)
        if (unit.name == unitName)
            return unit.seconds;
    refuse(text, "has an unknown unit");
}

std::string_view withoutBlanks(std::string_view text) {
    return text.substr(std::min(text.find_first_not_of(' '), text.size()));
}

} // namespace

double parseDuration(std::string_view text) {
    double number = 0;
    const auto* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    if (error == std::errc::invalid_argument)
        refuse(text, "does not begin with a number");
    if (error != std::errc() || std::isinf(number))
        refuse(text, "is beyond all durations");
    if (std::isnan(number))
        throw std::invalid_argument(fmt::format("Value {} is not a number", text));
    return number * secondsOf(withoutBlanks({stop, static_cast<std::size_t>(end - stop)}), text);
}

std::string durationText(double seconds) {
    for (const auto& unit : units) {
        const auto count = seconds / unit.seconds;
        if (count >= 1 && std::abs(count - std::round(count)) < 1e-9)
            return fmt::format("{:.0f}{}", count, unit.name);
    }
    return fmt::format("{}s", seconds);
}

} // namespace TAVO::config
