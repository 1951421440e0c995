#include <stdexcept>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tavo/cli/values/duration.h>

namespace {

using namespace TAVO::cli;
using testing::HasSubstr;

std::string refusalOfDuration(const std::string& text) {
    try {
        parseDuration(text);
    } catch (const std::invalid_argument& error) {
        return error.what();
    }
    return "";
}

TEST(ParseDuration, TakesUnitsAndPlainSeconds) {
    EXPECT_DOUBLE_EQ(parseDuration("10"), 10);
    EXPECT_DOUBLE_EQ(parseDuration("0"), 0);
    EXPECT_DOUBLE_EQ(parseDuration("1.5s"), 1.5);
    EXPECT_DOUBLE_EQ(parseDuration("500ms"), 0.5);
    EXPECT_DOUBLE_EQ(parseDuration("2m"), 120);
    EXPECT_DOUBLE_EQ(parseDuration("2 h"), 7200);
    EXPECT_DOUBLE_EQ(parseDuration("-1s"), -1);
}

TEST(ParseDuration, SaysWhatIsWrong) {
    for (const auto* text : {"", "ms", "s5", " 5s", "+5"})
        EXPECT_THAT(refusalOfDuration(text), HasSubstr("' does not begin with a number")) << text;
    for (const auto* text : {"5d", "5S", "5 s s", "5ss", "1,5s", "0x10"})
        EXPECT_THAT(refusalOfDuration(text), HasSubstr("' has an unknown unit")) << text;
    EXPECT_EQ(refusalOfDuration("nan"), "Value nan is not a number");
    for (const auto* text : {"inf", "1e999"})
        EXPECT_THAT(refusalOfDuration(text), HasSubstr("is beyond all durations")) << text;
}

TEST(DurationText, IsTheShortestThatCanBeReadAgain) {
    for (const auto* text : {"10s", "500ms", "2m", "1h", "1ms", "90s", "1000000s", "0s", "1.5ms"})
        EXPECT_EQ(durationText(parseDuration(text)), text == std::string("1.5ms") ? "0.0015s" : text);
}

} // namespace
