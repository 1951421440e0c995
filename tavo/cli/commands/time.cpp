#include <tavo/cli/commands/commands.h>

#include <cctype>
#include <chrono>
#include <cstdint>
#include <limits>
#include <map>
#include <optional>
#include <string>

#include <fmt/format.h>

#include <tavo/cli/output.h>
#include <tavo/cli/session.h>
#include <tavo/cli/user_input.h>
#include <tavo/cli/values/moment.h>
#include <tavo/cli/values/whole_number.h>

namespace TAVO::cli {

namespace {

namespace system_v1_0 = TAVOXTranscode::system_v1_0;

const std::map<std::string, ClockUnit> units = {{"s", ClockUnit::seconds},
                                                {"ms", ClockUnit::milliseconds},
                                                {"us", ClockUnit::microseconds},
                                                {"ns", ClockUnit::nanoseconds}};

struct UnitOptions {
    std::string unit;

    void describe(OptionList& list) {
        list.add("--unit", unit, "Unit the device counts since 1970: s, ms, us or ns; the device defines it",
                 {.choices = {"s", "ms", "us", "ns"}});
    }
};

void getTime(Session& session, Output& output, const UnitOptions& options) {
    const auto time = session.value(*session.device().getSystem(), system_v1_0::timeGet).time;
    nlohmann::json document = {{"time", time}};
    std::string moment;
    if (!options.unit.empty()) {
        moment = momentText(time, units.at(options.unit));
        document["moment"] = moment;
    }
    output.show(document,
                [&](TextWriter& text) { text.print("{}{}{}\n", time, moment.empty() ? "" : "  ", moment); });
}

/// Empty for a moment, which has other characters too.
std::optional<std::int64_t> parseNumber(const std::string& text) {
    using Limits = std::numeric_limits<std::int64_t>;
    const auto digits = text.substr(text.starts_with('-') ? 1 : 0);
    if (digits.empty() || digits.find_first_not_of("0123456789abcdefABCDEFxX") != std::string::npos ||
        std::isdigit(static_cast<unsigned char>(digits.front())) == 0)
        return std::nullopt;
    return parseInput([&] { return parseWholeNumber(text, Limits::min(), Limits::max()); });
}

std::int64_t now(ClockUnit unit) {
    const auto elapsed = std::chrono::system_clock::now().time_since_epoch();
    const std::int64_t nanoseconds = std::chrono::duration_cast<std::chrono::nanoseconds>(elapsed).count();
    return nanoseconds /
           (static_cast<std::int64_t>(ClockUnit::nanoseconds) / static_cast<std::int64_t>(unit));
}

struct SetOptions : UnitOptions {
    std::string time;

    void describe(OptionList& list) {
        UnitOptions::describe(list);
        list.add(
            "time", time,
            "A number as the device counts (put -- before a negative one); with --unit also a moment such "
            "as 2024-05-06T07:08:09Z, or now",
            {.required = true});
    }
};

std::int64_t wantedTime(const SetOptions& options) {
    if (const auto number = parseNumber(options.time))
        return *number;
    if (options.unit.empty())
        throw Failure(ExitCode::usage,
                      fmt::format("'{}' is not a number; to set a moment, give the device's unit with --unit",
                                  options.time));
    const auto unit = units.at(options.unit);
    if (options.time == "now")
        return now(unit);
    return parseInput([&] { return parseMoment(options.time, unit); });
}

void setTime(Session& session, Output& output, const SetOptions& options) {
    const auto time = wantedTime(options);
    session.execute(*session.device().getSystem(), system_v1_0::timeSet, time);
    output.show({{"time", time}}, [&](TextWriter& text) { text.print("{}\n", time); });
}

} // namespace

std::vector<Command> timeCommands() {
    return {
        command("time get", "Show the clock as the device counts it; with --unit also as date and time",
                getTime),
        command("time set", "Set the clock", setTime),
    };
}

} // namespace TAVO::cli
