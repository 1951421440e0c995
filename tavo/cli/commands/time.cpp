#include <tavo/cli/commands/commands.h>

#include <charconv>
#include <chrono>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include <fmt/format.h>

#include <tavo/cli/user_input.h>
#include <tavo/cli/values/moment.h>

namespace TAVO::cli {

namespace {

struct Arguments {
    std::string time;
    std::string unit;
};

const std::map<std::string, ClockUnit> units = {{"s", ClockUnit::seconds},
                                                {"ms", ClockUnit::milliseconds},
                                                {"us", ClockUnit::microseconds},
                                                {"ns", ClockUnit::nanoseconds}};

void getTime(Session& session, Output& output, const Arguments& arguments) {
    const std::int64_t time = session.value(session.device().getSystem()->getTimeGetMethod());
    nlohmann::json document = {{"time", time}};
    std::string moment;
    if (!arguments.unit.empty()) {
        moment = momentText(time, units.at(arguments.unit));
        document["moment"] = moment;
    }
    output.show(document,
                [&](TextWriter& text) { text.print("{}{}{}\n", time, moment.empty() ? "" : "  ", moment); });
}

std::optional<std::int64_t> parseNumber(const std::string& text) {
    std::int64_t number = 0;
    const auto* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc() || stop != end)
        return std::nullopt;
    return number;
}

std::int64_t now(ClockUnit unit) {
    const auto elapsed = std::chrono::system_clock::now().time_since_epoch();
    const std::int64_t nanoseconds = std::chrono::duration_cast<std::chrono::nanoseconds>(elapsed).count();
    return nanoseconds /
           (static_cast<std::int64_t>(ClockUnit::nanoseconds) / static_cast<std::int64_t>(unit));
}

std::int64_t wantedTime(const Arguments& arguments) {
    if (const auto number = parseNumber(arguments.time))
        return *number;
    if (arguments.unit.empty())
        throw Failure(ExitCode::usage,
                      fmt::format("'{}' is no number: for a moment, --unit says what the device counts",
                                  arguments.time));
    const auto unit = units.at(arguments.unit);
    if (arguments.time == "now")
        return now(unit);
    return parseInput([&] { return parseMoment(arguments.time, unit); });
}

void setTime(Session& session, Output& output, const Arguments& arguments) {
    const auto time = wantedTime(arguments);
    session.execute(session.device().getSystem()->getTimeSetMethod(time));
    output.show({{"time", time}}, [&](TextWriter& text) { text.print("{}\n", time); });
}

} // namespace

void addTime(CLI::App& tool, Program& program) {
    auto* time = tool.add_subcommand("time", "Read and set the device's clock");
    time->require_subcommand(1);
    const auto arguments = std::make_shared<Arguments>();
    const auto add = [&](const char* name, const char* description,
                         void (*action)(Session&, Output&, const Arguments&)) {
        auto* command = time->add_subcommand(name, description);
        command
            ->add_option(
                "--unit", arguments->unit,
                "What the device counts since 1970, which is the device's to define: s, ms, us or ns")
            ->check(CLI::IsMember({"s", "ms", "us", "ns"}));
        command->callback([&program, arguments, action] {
            program.action = [arguments, action](Session& session, Output& output) {
                action(session, output, *arguments);
            };
        });
        return command;
    };
    add("get", "The clock as the device counts it; with --unit also as date and time", getTime);
    add("set", "Set the clock", setTime)
        ->add_option(
            "time", arguments->time,
            "A number as the device counts (-- before a negative one); with --unit also a moment such "
            "as 2024-05-06T07:08:09Z, or now")
        ->required();
}

} // namespace TAVO::cli
