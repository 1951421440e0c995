#include <tavo/cli/values/moment.h>

#include <chrono>
#include <regex>
#include <stdexcept>

#include <fmt/format.h>

namespace TAVO::cli {

namespace {

namespace chrono = std::chrono;

constexpr std::int64_t secondsOfDay = 86400;

[[noreturn]] void refuse(const std::string& text) {
    throw std::invalid_argument(
        fmt::format("'{}' is neither a number nor a moment such as 2024-05-06T07:08:09Z", text));
}

std::int64_t part(const std::ssub_match& match) { return match.matched ? std::stoll(match.str()) : 0; }

std::int64_t daysOf(const std::smatch& match, const std::string& text) {
    const auto date = chrono::year(static_cast<int>(part(match[1]))) /
                      chrono::month(static_cast<unsigned>(part(match[2]))) /
                      chrono::day(static_cast<unsigned>(part(match[3])));
    if (!date.ok())
        refuse(text);
    return chrono::sys_days(date).time_since_epoch().count();
}

std::int64_t secondsIn(const std::smatch& match, const std::string& text) {
    const auto hour = part(match[4]), minute = part(match[5]), second = part(match[6]);
    const auto zoneHours = part(match[9]), zoneMinutes = part(match[10]);
    if (hour > 23 || minute > 59 || second > 59 || zoneHours > 23 || zoneMinutes > 59)
        refuse(text);
    const auto zone = (zoneHours * 60 + zoneMinutes) * (match[8] == "-" ? -60 : 60);
    return hour * 3600 + minute * 60 + second - zone;
}

std::int64_t fractionOf(const std::ssub_match& digits, std::int64_t unitsPerSecond) {
    std::int64_t fraction = 0;
    auto place = unitsPerSecond / 10;
    for (auto digit = digits.first; digit != digits.second && place > 0; ++digit, place /= 10)
        fraction += (*digit - '0') * place;
    return fraction;
}

/// Rounds down, for negative numbers too.
std::int64_t floorDivide(std::int64_t number, std::int64_t divisor) {
    return number / divisor - (number % divisor < 0 ? 1 : 0);
}

} // namespace

std::int64_t parseMoment(const std::string& text, ClockUnit unit) {
    static const std::regex form(
        R"((\d{4})-(\d{2})-(\d{2})[T ](\d{2}):(\d{2}):(\d{2})(?:\.(\d{1,18}))?(?:Z|([+-])(\d{2}):(\d{2}))?)");
    std::smatch match;
    if (!std::regex_match(text, match, form))
        refuse(text);
    const auto seconds = daysOf(match, text) * secondsOfDay + secondsIn(match, text);
    const auto perSecond = static_cast<std::int64_t>(unit);
    std::int64_t number = 0;
    if (__builtin_mul_overflow(seconds, perSecond, &number) ||
        __builtin_add_overflow(number, fractionOf(match[7], perSecond), &number))
        throw std::invalid_argument(fmt::format("'{}' is beyond what the unit can count", text));
    return number;
}

std::string momentText(std::int64_t number, ClockUnit unit) {
    const auto perSecond = static_cast<std::int64_t>(unit);
    const auto seconds = floorDivide(number, perSecond);
    const auto days = floorDivide(seconds, secondsOfDay);
    // Beyond the calendar's years only the number can be shown.
    constexpr std::int64_t farthestDay = 2'932'896;
    if (days > farthestDay || days < -719'528)
        return "beyond the calendar";
    const chrono::year_month_day date{chrono::sys_days{chrono::days{days}}};
    const auto inDay = seconds - days * secondsOfDay;
    auto text = fmt::format("{:04}-{:02}-{:02}T{:02}:{:02}:{:02}", static_cast<int>(date.year()),
                            static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                            inDay / 3600, inDay / 60 % 60, inDay % 60);
    int digits = 0;
    for (auto rest = perSecond; rest > 1; rest /= 10)
        ++digits;
    if (digits > 0)
        text += fmt::format(".{:0{}}", number - seconds * perSecond, digits);
    return text + "Z";
}

} // namespace TAVO::cli
