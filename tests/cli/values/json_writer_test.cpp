#include <cstdint>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <tavo/cli/values/json_writer.h>
#include <tavo/cli/values/utf8.h>
#include <tests/cli/written.h>
#include <tests/support/value_json.h>

namespace {

using namespace TAVO::cli;
using nlohmann::json;
using support::toJson;
using tool_test::written;

template <class Fill>
std::string document(Fill fill) {
    return written([&](Sink& sink) {
        JsonWriter writer(sink);
        fill(writer);
    });
}

std::string expected(const json& made) { return made.dump(2, ' ', false, json::error_handler_t::replace); }

TEST(JsonWriter, WritesDocumentsOfAllForms) {
    const auto made = json::parse(R"({"a": [], "b": {}, "c": [1, -2, [true, null], {"d": "e", "f": false}],
                                      "g": "\"\\\b\f\n\r\t\u0001", "h": 18446744073709551615})");
    EXPECT_EQ(document([&](JsonWriter& writer) { writer.write(made); }), expected(made));
    for (const auto* single : {"[]", "{}", "null", "\"x\"", "-9223372036854775808", "1.5"})
        EXPECT_EQ(document([&](JsonWriter& writer) { writer.write(json::parse(single)); }), single);
}

TEST(JsonWriter, WritesTheSameByParts) {
    const std::vector<std::uint8_t> bytes{0x00, 0x9a, 0xff};
    const auto text = document([&](JsonWriter& writer) {
        writer.object([&] {
            writer.key("bytes").bytes(bytes);
            writer.key("empty").object([] {});
            writer.key("list").array([&] {
                writer.null();
                writer.flag(true);
                writer.number(std::numeric_limits<std::int64_t>::min());
                writer.number(std::numeric_limits<std::uint64_t>::max());
            });
            writer.key("text").exactText("\xff\x01");
            writer.key("utf8").exactText("gr\xc3\xbcn");
        });
    });
    EXPECT_EQ(text, expected({{"bytes", {{"hex", "009aff"}}},
                              {"empty", json::object()},
                              {"list",
                               {nullptr, true, std::numeric_limits<std::int64_t>::min(),
                                std::numeric_limits<std::uint64_t>::max()}},
                              {"text", {{"hex-text", "ff01"}}},
                              {"utf8", "gr\xc3\xbcn"}}));
}

TEST(JsonWriter, EscapesWhatIsNotToBeSeen) {
    const auto text = document([](JsonWriter& writer) {
        writer.text("\x7f\xc2\x9b\xc2\xa0\xe2\x80\xae\xe2\x81\xa9\xf3\xa0\x80\x81|\x1b");
    });
    EXPECT_EQ(text, "\"\\u007f\\u009b\xc2\xa0\\u202e\\u2069\\udb40\\udc01|\\u001b\"");
    EXPECT_EQ(json::parse(text), "\x7f\xc2\x9b\xc2\xa0\xe2\x80\xae\xe2\x81\xa9\xf3\xa0\x80\x81|\x1b");
}

TEST(JsonWriter, ReplacesWhatIsNotUtf8AsEver) {
    std::mt19937 random(1);
    constexpr std::string_view interesting = "a\"\x7f\x80\x8f\x90\x9f\xa0\xbf\xc1\xc2\xdf\xe0\xe1\xed\xef\xf0"
                                             "\xf1\xf4\xf5\xff";
    for (int round = 0; round < 20000; ++round) {
        std::string text(random() % 6, '\0');
        for (auto& byte : text)
            byte = interesting[random() % interesting.size()];
        const auto plain = expected(text);
        const auto made = document([&](JsonWriter& writer) { writer.text(text); });
        EXPECT_EQ(json::parse(made), json::parse(plain)) << testing::PrintToString(text);
        const auto exact = document([&](JsonWriter& writer) { writer.exactText(text); });
        EXPECT_EQ(json::parse(exact), toJson(TAVO::Value(text))) << testing::PrintToString(text);
    }
}

} // namespace
