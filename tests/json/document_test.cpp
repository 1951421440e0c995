#include <cstdint>
#include <limits>
#include <memory>
#include <span>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <tavo/json/destination.h>
#include <tavo/json/json_value.h>
#include <tavo/json/json_writer.h>
#include <tests/support/allocation_meter.h>

namespace {

namespace json = TAVO::json;
using TAVO::Value;

std::string documentRefusal(const std::string& text) {
    try {
        json::parseDocument(text);
    } catch (const json::NotJson& error) {
        return std::string("not JSON: ") + error.what();
    } catch (const std::invalid_argument& error) {
        return error.what();
    }
    return "accepted";
}

TEST(JsonDocument, GivesNoNameTwice) {
    EXPECT_EQ(documentRefusal(R"({"a": {"b": 1, "c": 2}, "b": [{"b": 1}, {"b": 2}]})"), "accepted");
    EXPECT_EQ(documentRefusal(R"({"a": 1, "b": {"a": 2}, "a": 3})"), "gives 'a' twice");
    EXPECT_EQ(documentRefusal(R"([{"b": {"c": 1, "c": 1}}])"), "gives 'c' twice");
}

TEST(JsonDocument, HasAtMost64Levels) {
    const auto nested = [](std::size_t levels) {
        return std::string(levels, '[') + std::string(levels, ']');
    };
    EXPECT_EQ(documentRefusal(nested(64)), "accepted");
    EXPECT_EQ(documentRefusal(nested(66)), "is nested too deeply");
    EXPECT_EQ(documentRefusal(std::string(1'000'000, '[')), "is nested too deeply");
}

TEST(JsonDocument, SaysWhereItIsNone) {
    EXPECT_EQ(documentRefusal("[1 2]").substr(0, 55),
              "not JSON: is not JSON: parse error at line 1, column 4:");
}

TEST(JsonDocument, TakesNoMemoryWhenItEnds) {
    auto document = std::make_unique<json::Document>(json::parseDocument(
        R"([[1, [2, {"a": [3, {"b": {}}], "c": "a text that is longer than others"}]], []])"));
    const support::AllocationMeter meter;
    document.reset();
    EXPECT_EQ(meter.count(), 0u);
}

TEST(JsonBlocks, StandForBytesWhereTheyAreGiven) {
    const std::vector<std::uint8_t> bytes{1, 2, 3};
    const std::vector<std::span<const std::uint8_t>> blocks{bytes, {}};
    const auto document = json::parseDocument(R"([{"block": 0}, {"block": 1}, {"block": 0, "x": 1}])");
    const auto value = json::fromJson(document.root(), blocks, "v");
    const auto& list = std::get<Value::List>(value.data);
    EXPECT_EQ(list[0], Value(Value::Bytes{1, 2, 3}));
    EXPECT_EQ(list[1], Value(Value::Bytes{}));
    EXPECT_TRUE(std::holds_alternative<Value::Record>(list[2].data));
    const auto without = json::fromJson(document.root());
    EXPECT_TRUE(std::holds_alternative<Value::Record>(std::get<Value::List>(without.data)[0].data));
}

TEST(JsonBlocks, ThatAreNotThereAreNamed) {
    for (const auto* index : {"2", "-1", "true", "1.5", "\"0\"", "[]"}) {
        const auto document = json::parseDocument(R"([{"block": )" + std::string(index) + "}]");
        const std::vector<std::span<const std::uint8_t>> blocks(2);
        try {
            json::fromJson(document.root(), blocks, "v");
            ADD_FAILURE() << index;
        } catch (const std::invalid_argument& error) {
            EXPECT_EQ(std::string(error.what()),
                      "'v[0]': there is no block " + std::string(index) + "; given are 2");
        }
    }
}

TEST(JsonText, HoldsWhatIsWrittenToIt) {
    json::TextDestination text;
    json::JsonWriter writer(text, json::JsonWriter::Layout::line);
    writer.array([&] {
        writer.number(std::numeric_limits<std::int64_t>::min());
        writer.number(std::numeric_limits<std::uint64_t>::max());
        writer.text("\x01\xe2\x80\xae\xf3\xa0\x80\x81");
    });
    EXPECT_EQ(text.take(), R"([-9223372036854775808, 18446744073709551615, "\u0001\u202e\udb40\udc01"])");
    EXPECT_EQ(text.take(), "");
}

} // namespace
