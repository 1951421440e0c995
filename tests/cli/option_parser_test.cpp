#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <CLI/CLI.hpp>

#include <tavo/cli/option_parser.h>

namespace {

using namespace TAVO::cli;
using testing::ElementsAre;
using testing::HasSubstr;

/// The refusal of the words, empty when they are taken.
std::string refusalOf(const OptionList& options, std::vector<std::string> words) {
    CLI::App app;
    addOptions(app, options);
    std::reverse(words.begin(), words.end());
    try {
        app.parse(std::move(words));
    } catch (const CLI::ParseError& error) {
        return error.what();
    }
    return "";
}

std::string helpOf(const OptionList& options) {
    CLI::App app;
    addOptions(app, options);
    return app.help();
}

TEST(OptionKind, FollowsFromTheTargetUnlessItIsSaid) {
    bool flag = false;
    std::optional<std::int32_t> number;
    std::optional<double> seconds;
    std::vector<bool> levels;
    std::vector<std::string> words;
    std::string path;
    OptionList list;
    list.add("--flag", flag, "");
    list.add("number", number, "");
    list.add("--seconds", seconds, "");
    list.add("levels", levels, "");
    list.add("words", words, "");
    list.add("-f,--file", path, "", {.kind = ValueKind::file});
    std::vector<ValueKind> kinds;
    std::vector<std::string> arguments, repeated;
    for (const auto& option : list) {
        kinds.push_back(option.kind());
        if (option.isArgument())
            arguments.push_back(option.names);
        if (option.isRepeated())
            repeated.push_back(option.names);
    }
    EXPECT_THAT(kinds, ElementsAre(ValueKind::flag, ValueKind::integer, ValueKind::number, ValueKind::integer,
                                   ValueKind::text, ValueKind::file));
    EXPECT_THAT(arguments, ElementsAre("number", "levels", "words"));
    EXPECT_THAT(repeated, ElementsAre("levels", "words"));
}

TEST(OptionParser, FillsTheTargets) {
    bool yes = false;
    std::string text = "before";
    std::uint32_t number = 7;
    std::optional<double> seconds;
    std::vector<std::uint32_t> values;
    OptionList list;
    list.add("text", text, "");
    list.add("values", values, "");
    list.add("-y,--yes", yes, "");
    list.add("--number", number, "");
    list.add("--seconds", seconds, "");
    EXPECT_EQ(refusalOf(list, {}), "");
    EXPECT_EQ(text, "before");
    EXPECT_FALSE(seconds);
    EXPECT_EQ(refusalOf(list, {"after", "1", "0x10", "-y", "--number", "0x7f", "--seconds", "0.5"}), "");
    EXPECT_EQ(text, "after");
    EXPECT_THAT(values, ElementsAre(1, 16));
    EXPECT_TRUE(yes);
    EXPECT_EQ(number, 127u);
    EXPECT_EQ(seconds, 0.5);
}

TEST(OptionParser, RefusesWhatTheRulesExclude) {
    std::string state, other;
    OptionList list;
    list.add("state", state, "", {.required = true, .choices = {"on", "off"}});
    list.add("--other", other, "");
    EXPECT_THAT(refusalOf(list, {}), HasSubstr("state is required"));
    EXPECT_THAT(refusalOf(list, {"up"}), HasSubstr("up not in {on,off}"));
    EXPECT_EQ(refusalOf(list, {"off"}), "");

    bool simulated = false;
    std::string host, via;
    OptionList connection;
    connection.add("--host", host, "");
    connection.add("--via", via, "", {.needs = {"--host"}});
    connection.add("--sim", simulated, "", {.excludes = {"--host"}});
    EXPECT_THAT(refusalOf(connection, {"--via", "x"}), HasSubstr("--via requires --host"));
    EXPECT_THAT(refusalOf(connection, {"--sim", "--host", "a"}), HasSubstr("excludes"));
    EXPECT_EQ(refusalOf(connection, {"--via", "x", "--host", "a"}), "");
}

TEST(OptionParser, KeepsNumbersWithinTheirLimits) {
    std::uint32_t address = 0;
    double settle = 0, pause = 0;
    std::int32_t bits = 0;
    OptionList list;
    list.add("--address", address, "", {.limits = between(0x08, 0x77)});
    list.add("--settle", settle, "", {.limits = positive()});
    list.add("--pause", pause, "", {.limits = between(0.5, 2.0)});
    list.add("--bits", bits, "", {.limits = notNegative()});
    EXPECT_EQ(refusalOf(list, {"--address", "0x77", "--settle", "0.1", "--pause", "2", "--bits", "0"}), "");
    EXPECT_THAT(refusalOf(list, {"--address", "0x78"}), HasSubstr("Value 0x78 not in range 8 to 119"));
    EXPECT_THAT(refusalOf(list, {"--settle", "0"}), HasSubstr("--settle: Value 0 not in range"));
    EXPECT_THAT(refusalOf(list, {"--pause", "0.4"}), HasSubstr("Value 0.4 not in range"));
    EXPECT_THAT(refusalOf(list, {"--bits=-1"}), HasSubstr("Value -1 not in range"));
    for (const auto* option : {"--settle", "--pause", "--bits"})
        EXPECT_THAT(refusalOf(list, {option, "nan"}), HasSubstr("Value nan is not a number")) << option;
}

TEST(OptionParser, NamesTheNumberAndBoundsThatPeopleCanRead) {
    std::optional<std::uint16_t> port;
    std::uint32_t address = 0;
    std::int32_t baud = 0;
    double settle = 0, wait = 0;
    OptionList list;
    list.add("--port", port, "", {.limits = between(1, 65535)});
    list.add("--address", address, "", {.limits = between(0x08, 0x77)});
    list.add("--baud", baud, "");
    list.add("--settle", settle, "", {.limits = positive()});
    list.add("--wait", wait, "", {.kind = ValueKind::duration, .limits = between(0.5, 7200.0)});
    EXPECT_EQ(refusalOf(list, {"--port", "99999"}), "--port: Value 99999 not in range 1 to 65535");
    EXPECT_EQ(refusalOf(list, {"--port", "-1"}), "--port: Value -1 not in range 1 to 65535");
    EXPECT_EQ(refusalOf(list, {"--address", "0x78"}),
              "--address: Value 0x78 not in range 8 to 119 (0x8 to 0x77)");
    EXPECT_EQ(refusalOf(list, {"--baud", "99999999999999999999"}),
              "--baud: Value 99999999999999999999 not in range -2147483648 to 2147483647");
    EXPECT_EQ(refusalOf(list, {"--settle", "0"}), "--settle: Value 0 not in range above 0");
    EXPECT_EQ(refusalOf(list, {"--wait", "3h"}), "--wait: Value 3h not in range 500ms to 2h");
}

TEST(OptionParser, TakesWholeNumbersOfThreeKindsEverywhere) {
    std::vector<std::uint32_t> values;
    std::int32_t row = 0;
    OptionList list;
    list.add("values", values, "");
    list.add("--row", row, "");
    EXPECT_EQ(refusalOf(list, {"10", "0x10", "010", "--row=-010"}), "");
    EXPECT_THAT(values, ElementsAre(10, 16, 8));
    EXPECT_EQ(row, -8);
    EXPECT_THAT(refusalOf(list, {"08"}),
                HasSubstr("values: Value 08 is not a number: after a leading 0 it is octal"));
    EXPECT_THAT(refusalOf(list, {"ten"}), HasSubstr("values: Value ten is not a number"));
    EXPECT_THAT(refusalOf(list, {"--row", "1.5"}),
                HasSubstr("--row: Value 1.5 is not a number; whole numbers are"));
}

TEST(OptionParser, TakesDurationsWithTheirUnits) {
    std::optional<double> timeout;
    OptionList list;
    list.add("--timeout", timeout, "", {.kind = ValueKind::duration, .limits = between(0.001, 1e6)});
    for (const auto& [text, seconds] :
         {std::pair{"500ms", 0.5}, {"10s", 10.0}, {"2m", 120.0}, {"1h", 3600.0}, {"7", 7.0}}) {
        EXPECT_EQ(refusalOf(list, {"--timeout", text}), "") << text;
        EXPECT_DOUBLE_EQ(timeout.value_or(0), seconds) << text;
    }
    EXPECT_THAT(refusalOf(list, {"--timeout", "ms"}), HasSubstr("'ms' does not begin with a number"));
    EXPECT_NE(refusalOf(list, {"--timeout", "5d"}), "");
    EXPECT_NE(refusalOf(list, {"--timeout", "0s"}), "");
}

TEST(OptionParser, TellsEverythingInTheHelp) {
    std::int32_t baud = 115200;
    std::vector<std::string> shifts;
    OptionList list;
    list.add("shift", shifts, "What to shift", {.required = true, .valueName = "ir|dr BITS HEX"});
    list.add("--baud", baud, "Bits per second",
             {.showsDefault = true, .limits = between(1, 921600), .heading = "Line"});
    const auto help = helpOf(list);
    EXPECT_THAT(help, HasSubstr("\n  shift ir|dr BITS HEX ... REQUIRED\n"));
    EXPECT_THAT(help, HasSubstr("\nLine:\n  --baud INT:INT in [1 - 921600]=115200\n"));
    EXPECT_THAT(help, HasSubstr("Bits per second"));
}

} // namespace
