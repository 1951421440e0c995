#include <cstdint>
#include <limits>
#include <stdexcept>
#include <string>

#include <gtest/gtest.h>

#include <tavo/cli/values/field_text.h>

namespace {

using namespace TAVO;
using namespace TAVO::cli;

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

} // namespace
