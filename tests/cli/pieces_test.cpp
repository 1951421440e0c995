#include <cstdint>
#include <limits>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tavo/cli/failure.h>
#include <tavo/cli/values/field_text.h>
#include <tavo/cli/values/moment.h>
#include <tavo/cli/output.h>
#include <tavo/cli/prepared_call.h>
#include <tavo/cli/values/words.h>
#include <tavo/client/object/container.h>
#include <tavo/client/wire/error.h>

namespace {

using namespace TAVO;
using namespace TAVO::cli;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

TEST(SplitWords, SeparatesAtBlanksAndDropsComments) {
    EXPECT_THAT(splitWords(""), IsEmpty());
    EXPECT_THAT(splitWords("  \t# all of it"), IsEmpty());
    EXPECT_THAT(splitWords(" power.set\tstate=1 # on\r"), ElementsAre("power.set", "state=1"));
    EXPECT_THAT(splitWords("a#b"), ElementsAre("a#b"));
}

TEST(SplitWords, KeepsWordsTogetherBetweenQuotes) {
    EXPECT_THAT(splitWords("name=\"two words\" ''"), ElementsAre("name=two words", ""));
    EXPECT_THAT(splitWords("list='[{\"a\": 1}]'"), ElementsAre("list=[{\"a\": 1}]"));
    EXPECT_THAT(splitWords(R"("a \"b\" \\ \n")"), ElementsAre(R"(a "b" \ \n)"));
    EXPECT_THAT(splitWords("'#' x"), ElementsAre("#", "x"));
}

TEST(SplitWords, RefusesAQuoteThatIsNotClosed) {
    EXPECT_THROW(splitWords("a 'b"), std::invalid_argument);
    EXPECT_THROW(splitWords("a=\"b\\\""), std::invalid_argument);
}

TEST(ParseField, TakesFlagsInFourSpellings) {
    EXPECT_EQ(parseField({"f", "bool"}, "true"), Value(true));
    EXPECT_EQ(parseField({"f", "bool"}, "1"), Value(true));
    EXPECT_EQ(parseField({"f", "bool"}, "false"), Value(false));
    EXPECT_EQ(parseField({"f", "bool"}, "0"), Value(false));
    EXPECT_THROW(parseField({"f", "bool"}, "yes"), std::invalid_argument);
}

TEST(ParseField, TakesIntegersUpToTheirLimitsAndNoFurther) {
    struct Limits {
        const char* type;
        const char* lowest;
        const char* belowLowest;
        const char* highest;
        const char* aboveHighest;
    };
    for (const auto& [type, lowest, below, highest, above] : {
             Limits{"u8", "0", "-1", "255", "256"},
             Limits{"i32", "-2147483648", "-2147483649", "2147483647", "2147483648"},
             Limits{"u32", "0", "-1", "0xFFFFFFFF", "0x100000000"},
             Limits{"i64", "-9223372036854775808", "-9223372036854775809", "9223372036854775807",
                    "9223372036854775808"},
             Limits{"u64", "0", "-1", "18446744073709551615", "18446744073709551616"},
         }) {
        const FieldDescription field{"f", type};
        EXPECT_NO_THROW(parseField(field, lowest)) << type;
        EXPECT_NO_THROW(parseField(field, highest)) << type;
        EXPECT_THROW(parseField(field, below), std::invalid_argument) << type;
        EXPECT_THROW(parseField(field, above), std::invalid_argument) << type;
    }
    EXPECT_EQ(parseField({"f", "i32"}, "-0x10"), Value(std::int64_t{-16}));
    EXPECT_EQ(parseField({"f", "i64"}, "-9223372036854775808"),
              Value(std::numeric_limits<std::int64_t>::min()));
    EXPECT_EQ(parseField({"f", "u64"}, "0xfF"), Value(std::uint64_t{255}));
}

TEST(ParseField, RefusesWhatIsNoInteger) {
    for (const auto* text : {"", "-", "0x", "1.5", " 1", "1 ", "+1", "--1", "ten", "0x-1"})
        EXPECT_THROW(parseField({"f", "i32"}, text), std::invalid_argument) << text;
}

TEST(ParseField, NamesTheFieldAndItsRange) {
    try {
        parseField({"value", "u8"}, "300");
        FAIL();
    } catch (const std::invalid_argument& error) {
        EXPECT_STREQ(error.what(), "'value' must be a number from 0 to 255, not '300'");
    }
}

TEST(ParseField, TakesTextsAsTheyStand) {
    EXPECT_EQ(parseField({"f", "text"}, ""), Value(std::string()));
    EXPECT_EQ(parseField({"f", "text"}, " a=\"b\" "), Value(std::string(" a=\"b\" ")));
}

TEST(ParseField, TakesBytesAsPairsOfDigits) {
    EXPECT_EQ(parseField({"f", "bytes"}, "00fFa5"), Value(Value::Bytes{0x00, 0xff, 0xa5}));
    EXPECT_EQ(parseField({"f", "bytes"}, ""), Value(Value::Bytes{}));
    EXPECT_THROW(parseField({"f", "bytes"}, "123"), std::invalid_argument);
    EXPECT_THROW(parseField({"f", "bytes"}, "0x12"), std::invalid_argument);
}

TEST(ParseField, TakesListsAndRecordsAsJson) {
    EXPECT_EQ(parseField({"f", "list of i32"}, "[1]"), Value(Value::List{Value(std::uint64_t{1})}));
    EXPECT_EQ(parseField({"f", "{a: bool}"}, R"({"a": true})"), Value(Value::Record{{"a", Value(true)}}));
    EXPECT_THROW(parseField({"f", "list of i32"}, "[1"), std::invalid_argument);
    EXPECT_THROW(parseField({"f", "list of i32"}, "[1.5]"), std::invalid_argument);
}

TEST(ParseField, RefusesJsonThatIsNestedTooDeeply) {
    const FieldDescription field{"f", "list of i32"};
    try {
        parseField(field, std::string(1'000'000, '['));
        FAIL();
    } catch (const std::invalid_argument& error) {
        EXPECT_STREQ(error.what(), "'f' is nested too deeply");
    }
    EXPECT_NO_THROW(parseField(field, std::string(30, '[') + std::string(30, ']')));
}

TEST(ParseCall, SplitsAtTheLastDotAndTheFirstEqualsSign) {
    const std::vector<std::string> words = {"bench.drawer.left.set", "state=1", "text=a=b", "empty="};
    const auto call = parseCall(words);
    EXPECT_EQ(call.object, "bench.drawer.left");
    EXPECT_EQ(call.method, "set");
    ASSERT_EQ(call.assignments.size(), 3u);
    EXPECT_EQ(call.assignments[1].field, "text");
    EXPECT_EQ(call.assignments[1].text, "a=b");
    EXPECT_EQ(call.assignments[2].text, "");
}

TEST(ParseCall, RefusesWhatIsNoCall) {
    for (const auto& words : std::vector<std::vector<std::string>>{
             {}, {"power"}, {".get"}, {"power."}, {"power.get", "state"}, {"power.get", "=1"}}) {
        try {
            parseCall(words);
            FAIL();
        } catch (const Failure& failure) {
            EXPECT_EQ(failure.code, ExitCode::usage);
            EXPECT_THAT(failure.what(), HasSubstr("OBJECT.METHOD [name=value ...]"));
        }
    }
}

TEST(Moment, CountsFromTheBeginningOf1970InTheUnit) {
    EXPECT_EQ(parseMoment("1970-01-01T00:00:00Z", ClockUnit::seconds), 0);
    EXPECT_EQ(parseMoment("2024-05-06T07:08:09Z", ClockUnit::seconds), 1714979289);
    EXPECT_EQ(parseMoment("2024-05-06T07:08:09", ClockUnit::milliseconds), 1714979289000);
    EXPECT_EQ(parseMoment("2024-05-06T07:08:09.25Z", ClockUnit::microseconds), 1714979289250000);
    EXPECT_EQ(parseMoment("2024-05-06T07:08:09.123456789123Z", ClockUnit::milliseconds), 1714979289123);
    EXPECT_EQ(parseMoment("2024-05-06T09:38:09+02:30", ClockUnit::seconds), 1714979289);
    EXPECT_EQ(parseMoment("2024-05-06T02:08:09-05:00", ClockUnit::seconds), 1714979289);
    EXPECT_EQ(parseMoment("1969-12-31T23:59:59.5Z", ClockUnit::milliseconds), -500);
}

TEST(Moment, RefusesWhatIsNone) {
    for (const auto* text :
         {"", "today", "2024-05-06", "2024-13-01T00:00:00Z", "2023-02-29T00:00:00Z", "2024-05-06T24:00:00Z",
          "2024-05-06T07:60:00Z", "2024-05-06T07:08:09Zx", "2024-05-06T07:08:09+2"})
        EXPECT_THROW(parseMoment(text, ClockUnit::seconds), std::invalid_argument) << text;
    EXPECT_THROW(parseMoment("2500-01-01T00:00:00Z", ClockUnit::nanoseconds), std::invalid_argument);
}

TEST(Moment, IsWrittenWithTheDigitsOfItsUnit) {
    EXPECT_EQ(momentText(1714979289, ClockUnit::seconds), "2024-05-06T07:08:09Z");
    EXPECT_EQ(momentText(1714979289250000, ClockUnit::microseconds), "2024-05-06T07:08:09.250000Z");
    EXPECT_EQ(momentText(-500, ClockUnit::milliseconds), "1969-12-31T23:59:59.500Z");
    EXPECT_EQ(momentText(std::numeric_limits<std::int64_t>::max(), ClockUnit::seconds),
              "beyond the calendar");
    EXPECT_EQ(momentText(std::numeric_limits<std::int64_t>::min(), ClockUnit::seconds),
              "beyond the calendar");
}

TEST(DescribeFailure, GivesEveryExceptionItsExitCode) {
    const auto codeOf = [](const std::exception& exception) {
        return static_cast<int>(describeFailure(exception).code);
    };
    const auto container = std::make_shared<Container>("power", nullptr);
    const auto method = std::make_shared<Method>("set", *container, dto::Params{});
    EXPECT_EQ(codeOf(ConfigurationError("x")), 1);
    EXPECT_EQ(codeOf(ExecutionError(method, 0, "x")), 1);
    EXPECT_EQ(codeOf(Error("Unknown error code: 1007: x")), 1);
    EXPECT_EQ(codeOf(Error("Error executing type() method on power: 5")), 1);
    EXPECT_EQ(codeOf(Failure(ExitCode::usage, "x")), 2);
    EXPECT_EQ(codeOf(Failure(ExitCode::notFound, "x")), 3);
    EXPECT_EQ(codeOf(LockError("x")), 4);
    EXPECT_EQ(codeOf(TAVOLoginError("x")), 4);
    EXPECT_EQ(codeOf(TAVOKeyError("x")), 4);
    EXPECT_EQ(codeOf(NetworkError("x")), 5);
    EXPECT_EQ(codeOf(SpecificationError("x")), 9);
    EXPECT_EQ(codeOf(Error("x")), 9);
    EXPECT_EQ(codeOf(std::runtime_error("x")), 9);
}

} // namespace
