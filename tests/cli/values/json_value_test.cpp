#include <cstdint>
#include <limits>
#include <stdexcept>
#include <string>

#include <gtest/gtest.h>

#include <tavo/cli/values/json_value.h>
#include <tests/support/value_json.h>

namespace {

using nlohmann::json;
using support::toJson;
using TAVO::Value;
using TAVO::cli::bytesFromHex;
using TAVO::cli::fromJson;

std::string refusal(const char* text) {
    try {
        fromJson(json::parse(text));
    } catch (const std::invalid_argument& error) {
        return error.what();
    }
    return "accepted";
}

TEST(JsonValue, KeepsTheSignednessOfNumbersBothWays) {
    constexpr auto highest = std::numeric_limits<std::uint64_t>::max();
    constexpr auto lowest = std::numeric_limits<std::int64_t>::min();
    EXPECT_EQ(toJson(Value(highest)).dump(), "18446744073709551615");
    EXPECT_EQ(toJson(Value(lowest)).dump(), "-9223372036854775808");
    EXPECT_EQ(fromJson(toJson(Value(std::int64_t{5}))), Value(std::int64_t{5}));
    EXPECT_EQ(fromJson(toJson(Value(std::uint64_t{5}))), Value(std::uint64_t{5}));
    EXPECT_EQ(fromJson(json::parse("18446744073709551615")), Value(highest));
    EXPECT_EQ(fromJson(json::parse("-9223372036854775808")), Value(lowest));
    EXPECT_EQ(fromJson(json::parse("true")), Value(true));
}

TEST(JsonValue, WritesBytesAsHexadecimalDigits) {
    const Value value(Value::Bytes{0x00, 0x9a, 0xff});
    EXPECT_EQ(toJson(value).dump(), R"({"hex":"009aff"})");
    EXPECT_EQ(fromJson(toJson(value)), value);
    EXPECT_EQ(toJson(Value(Value::Bytes{})).dump(), R"({"hex":""})");
    EXPECT_EQ(fromJson(json::parse(R"({"hex": "00 9A fF"})")), value);
}

TEST(JsonValue, KeepsTextsThatAreNotUtf8) {
    for (const std::string text : {"\xff", "ok\xc3", "\xed\xa0\x80", "\xc0\x80", "a\x80z"}) {
        const auto made = toJson(Value(text));
        EXPECT_TRUE(made.contains("hex-text"));
        EXPECT_NO_THROW(static_cast<void>(made.dump()));
        EXPECT_EQ(fromJson(json::parse(made.dump())), Value(text));
    }
    EXPECT_EQ(toJson(Value(std::string("\xff\x01"))).dump(), R"({"hex-text":"ff01"})");
}

TEST(JsonValue, KeepsTextsThatAreUtf8AsTheyAre) {
    for (const auto& text : {std::string(), std::string("\xc3\x9c"), std::string("a\0b", 3)}) {
        const auto made = toJson(Value(text));
        EXPECT_TRUE(made.is_string());
        EXPECT_EQ(fromJson(json::parse(made.dump())), Value(text));
    }
}

TEST(JsonValue, NestsRecordsAndLists) {
    const auto document = json::parse(R"({"list": [{"a": 1, "b": {"hex": "00"}}, {}], "text": "t"})");
    EXPECT_EQ(toJson(fromJson(document)), document);
    EXPECT_EQ(toJson(Value(Value::List{})).dump(), "[]");
    EXPECT_EQ(toJson(Value(Value::Record{})).dump(), "{}");
}

TEST(JsonValue, TakesAnObjectWithMoreThanDigitsForARecord) {
    EXPECT_TRUE(fromJson(json::parse(R"({"hex": "00", "more": 1})")).find("hex"));
    EXPECT_TRUE(fromJson(json::parse(R"({"hex": 1})")).find("hex"));
}

TEST(JsonValue, RefusesWhatNoRecordHoldsAndNamesThePlace) {
    EXPECT_EQ(refusal("null"), "the value must not be null");
    EXPECT_EQ(refusal(R"({"a": [0, null]})"), "'a[1]' must not be null");
    EXPECT_EQ(refusal(R"({"a": {"b": 1.5}})"), "'a.b' must be an integer of at most 64 bits, not 1.5");
    EXPECT_NE(refusal("18446744073709551616"), "accepted");
    EXPECT_EQ(refusal(R"({"a": {"hex": "0g"}})"), "'a': '0g' is not a pair of hexadecimal digits");
}

TEST(BytesFromHex, RefusesOddAndForeignDigits) {
    EXPECT_EQ(bytesFromHex(""), Value::Bytes());
    EXPECT_EQ(bytesFromHex(" 01  ff "), (Value::Bytes{1, 255}));
    for (const char* digits : {"0", "001", "0 1", "0x01", "-1", "+1", "zz", "01,02"})
        EXPECT_THROW(bytesFromHex(digits), std::invalid_argument) << digits;
}

} // namespace
