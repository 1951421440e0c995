#include <cstddef>
#include <cstdint>
#include <limits>
#include <ostream>
#include <stdexcept>
#include <string>
#include <tuple>
#include <utility>
#include <variant>
#include <vector>

#include <gtest/gtest.h>

#include <tavo/client/commonmodules/relay.h>
#include <tavo/client/transcode/base_tables.h>
#include <tavo/client/transcode/device_records.h>
#include <tavo/client/transcode/system_records.h>
#include <tavo/client/transcode/value_codec.h>
#include <tavo/client/transcode/value_view_codec.h>

namespace {

using TAVO::Value;
using namespace TAVO::TAVOXTranscode;
namespace dto = TAVO::dto;

Value signedValue(std::int64_t number) { return Value(number); }
Value unsignedValue(std::uint64_t number) { return Value(number); }
Value text(const char* content) { return Value(std::string(content)); }
Value bytes(Bytes content) { return Value(std::move(content)); }
Value list(Value::List elements) { return Value(std::move(elements)); }
Value record(Value::Record members) { return Value(std::move(members)); }

Value member(const char* name, std::uint64_t id) {
    return record({{"name", text(name)}, {"id", unsignedValue(id)}});
}

const ReplyDescription& methodsDescription() { return *base_v1_0::rows()[3].reply; }

template <class Read>
std::string refusalOf(Read read) {
    try {
        read();
    } catch (const std::invalid_argument& error) {
        return error.what();
    }
    return "accepted";
}

template <class Record>
std::string refusal(const Value& value) {
    Record target;
    return refusalOf([&] { recordFromValue("", value, target); });
}

template <class Record>
Record filled(const Value& value) {
    Record target;
    recordFromValue("", value, target);
    return target;
}

TEST(ValueText, OfPlainValues) {
    EXPECT_EQ(Value(true).toString(), "true");
    EXPECT_EQ(Value(false).toString(), "false");
    EXPECT_EQ(signedValue(std::numeric_limits<std::int64_t>::min()).toString(), "-9223372036854775808");
    EXPECT_EQ(unsignedValue(std::numeric_limits<std::uint64_t>::max()).toString(), "18446744073709551615");
    EXPECT_EQ(bytes({}).toString(), "");
    EXPECT_EQ(bytes({0x00, 0x0f, 0xa0, 0xff}).toString(), "000fa0ff");
}

TEST(ValueText, QuotesTextsAndWritesControlCharactersAsDigits) {
    EXPECT_EQ(text("").toString(), "\"\"");
    EXPECT_EQ(text("a \"b\" \\").toString(), R"("a \"b\" \\")");
    EXPECT_EQ(text("\n\x7f").toString(), R"("\x0a\x7f")");
    EXPECT_EQ(Value(std::string(1, '\0')).toString(), R"("\x00")");
}

TEST(ValueText, NamesTheFieldsOfARecordAndBracesNestedOnes) {
    EXPECT_EQ(record({}).toString(), "");
    EXPECT_EQ(record({{"a", signedValue(-1)}, {"b", text("x")}}).toString(), "a=-1 b=\"x\"");
    EXPECT_EQ(record({{"outer", record({{"a", Value(true)}})}}).toString(), "outer={a=true}");
    EXPECT_EQ(list({}).toString(), "[]");
    EXPECT_EQ(list({signedValue(1), signedValue(2)}).toString(), "[1, 2]");
    EXPECT_EQ(list({member("m", 1), member("", 2)}).toString(), "[{name=\"m\" id=1}, {name=\"\" id=2}]");
}

TEST(ValueFind, GivesAFieldOfARecordByName) {
    const auto value = member("m", 7);
    ASSERT_TRUE(value.find("id"));
    EXPECT_EQ(*value.find("id"), unsignedValue(7));
    EXPECT_FALSE(value.find("Id"));
    EXPECT_FALSE(text("id").find("id"));
    EXPECT_FALSE(list({}).find("id"));
}

TEST(ValueEquality, TellsTypesAndContentsApart) {
    EXPECT_EQ(member("m", 1), member("m", 1));
    EXPECT_NE(member("m", 1), member("m", 2));
    EXPECT_NE(signedValue(1), unsignedValue(1));
    EXPECT_NE(Value(true), signedValue(1));
}

TEST(RecordToValue, KeepsTheOrderOnTheWireAndTheSignedness) {
    dto::system::TimeSetRequest time;
    time.time = -5;
    EXPECT_EQ(valueOf(viewRecord(time)), record({{"time", signedValue(-5)}}));

    dto::Device::InfoReply info;
    info.name = "tavo";
    info.version = {1, 2, 0xffffffff};
    info.boards.push_back({"a", "b", "c", "d"});
    const auto expected = record({{"name", text("tavo")},
                                  {"version", record({{"major", unsignedValue(1)},
                                                      {"minor", unsignedValue(2)},
                                                      {"bugfix", unsignedValue(0xffffffff)}})},
                                  {"firmware", list({})},
                                  {"boards", list({record({{"field1", text("a")},
                                                           {"field2", text("b")},
                                                           {"field3", text("c")},
                                                           {"field4", text("d")}})})}});
    EXPECT_EQ(valueOf(viewRecord(info)), expected);
}

TEST(RecordToValue, HoldsOfTheMethodsWhatTravels) {
    dto::Base::MethodsReply reply;
    reply.methods.push_back({"get", 4, "get()"});
    EXPECT_EQ(methodsDescription().toValue(reply), record({{"methods", list({member("get", 4)})}}));
}

TEST(RecordFromValue, TakesTheFieldsInAnyOrder) {
    const auto value = record({{"password", text("p")}, {"user", text("u")}});
    const auto request = filled<dto::Device::LockRequest>(value);
    EXPECT_EQ(request.user, "u");
    EXPECT_EQ(request.password, "p");
}

TEST(RecordFromValue, NamesTheFieldThatIsMissing) {
    EXPECT_EQ(refusal<dto::Device::LockRequest>(record({{"user", text("u")}})),
              "field 'password' (text) is missing");
}

TEST(RecordFromValue, NamesTheFieldThatIsUnknown) {
    EXPECT_EQ(refusal<dto::relay::SetRequest>(record({{"state", Value(true)}, {"State", Value(true)}})),
              "there is no field 'State'");
}

TEST(RecordFromValue, NamesTheFieldThatIsGivenTwice) {
    EXPECT_EQ(refusal<dto::relay::SetRequest>(record({{"state", Value(true)}, {"state", Value(true)}})),
              "field 'state' is given twice");
}

TEST(RecordFromValue, NamesTheFieldOfAnotherType) {
    EXPECT_EQ(refusal<dto::relay::SetRequest>(record({{"state", text("on")}})),
              "'state' must be bool, not \"on\"");
    EXPECT_EQ(refusal<dto::relay::ToggleRequest>(record({{"value", list({})}})),
              "'value' must be i32, not []");
    EXPECT_EQ(refusal<dto::Device::LoginRequest>(record({{"user", bytes({1})}})),
              "'user' must be text, not 01");
    EXPECT_EQ(refusal<dto::Device::KeyReply>(record({{"key", text("k")}})), "'key' must be bytes, not \"k\"");
    EXPECT_EQ(refusal<dto::Base::MembersReply>(record({{"members", text("m")}})),
              "'members' must be a list, not \"m\"");
    EXPECT_EQ(refusal<dto::Base::VersionReply>(record({{"version", signedValue(1)}})),
              "'version' must be a record, not 1");
    EXPECT_EQ(refusal<dto::relay::SetRequest>(Value(true)), "the value must be a record, not true");
}

TEST(RecordFromValue, NamesThePathToANestedField) {
    EXPECT_EQ(refusal<dto::Base::MembersReply>(
                  record({{"members", list({member("a", 1), member("b", 4294967296)})}})),
              "'members[1].id' must be u32, not 4294967296");
    EXPECT_EQ(refusal<dto::Base::MembersReply>(record({{"members", list({record({{"name", text("a")}})})}})),
              "field 'members[0].id' (u32) is missing");
    EXPECT_EQ(refusal<dto::Base::MembersReply>(record({{"members", list({text("a")})}})),
              "'members[0]' must be a record, not \"a\"");
    EXPECT_EQ(refusal<dto::Base::VersionReply>(record({{"version", record({{"mayor", signedValue(1)}})}})),
              "there is no field 'version.mayor'");
    const auto connection = record({{"first", list({text("a"), signedValue(2)})}, {"second", list({})}});
    EXPECT_EQ(refusal<dto::Base::HeaderStatusGetReply>(
                  record({{"headers", list({})}, {"connections", list({connection})}})),
              "'connections[0].first[1]' must be text, not 2");
}

TEST(RecordFromValue, RefusesASignatureWhereNoneTravels) {
    const auto method =
        record({{"name", text("get")}, {"id", unsignedValue(1)}, {"signature", text("get()")}});
    const auto value = record({{"methods", list({method})}});
    dto::Base::MethodsReply reply;
    EXPECT_EQ(refusalOf([&] { methodsDescription().fromValue(value, reply); }),
              "there is no field 'methods[0].signature'");
    EXPECT_EQ((refusal<dto::Base::MethodsReply>(value)), "accepted");
}

struct Numbers {
    std::uint8_t u8 = 0;
    std::int32_t i32 = 0;
    std::uint32_t u32 = 0;
    std::int64_t i64 = 0;
    std::uint64_t u64 = 0;
    bool flag = false;
    static constexpr auto fields() {
        return std::tuple{dto::Field{"u8", &Numbers::u8},   dto::Field{"i32", &Numbers::i32},
                          dto::Field{"u32", &Numbers::u32}, dto::Field{"i64", &Numbers::i64},
                          dto::Field{"u64", &Numbers::u64}, dto::Field{"flag", &Numbers::flag}};
    }
};

struct NumberCase {
    const char* field;
    Value value;
    bool fits;
};

void PrintTo(const NumberCase& number, std::ostream* out) {
    *out << number.field << " " << number.value.toString();
}

class NumberRange : public testing::TestWithParam<NumberCase> {};

TEST_P(NumberRange, IsThatOfTheField) {
    auto value = valueOf(viewRecord(Numbers{}));
    for (auto& field : std::get<Value::Record>(value.data))
        if (field.name == GetParam().field)
            field.value = GetParam().value;
    const auto type = GetParam().field == std::string("flag") ? "bool" : GetParam().field;
    const auto expected = GetParam().fits ? std::string("accepted")
                                          : "'" + std::string(GetParam().field) + "' must be " + type +
                                                ", not " + GetParam().value.toString();
    EXPECT_EQ(refusal<Numbers>(value), expected);
    if (!GetParam().fits)
        return;
    const auto kept = valueOf(viewRecord(filled<Numbers>(value)));
    EXPECT_EQ(integerOf(*kept.find(GetParam().field)).bits, integerOf(GetParam().value).bits);
}

constexpr auto lowest64 = std::numeric_limits<std::int64_t>::min();
constexpr auto highest64 = std::numeric_limits<std::int64_t>::max();
constexpr auto highestUnsigned64 = std::numeric_limits<std::uint64_t>::max();

INSTANTIATE_TEST_SUITE_P(
    Numbers, NumberRange,
    testing::Values(
        NumberCase{"u8", signedValue(-1), false}, NumberCase{"u8", signedValue(0), true},
        NumberCase{"u8", unsignedValue(255), true}, NumberCase{"u8", signedValue(256), false},
        NumberCase{"i32", signedValue(-2147483649), false}, NumberCase{"i32", signedValue(-2147483648), true},
        NumberCase{"i32", unsignedValue(2147483647), true},
        NumberCase{"i32", unsignedValue(2147483648), false}, NumberCase{"u32", signedValue(-1), false},
        NumberCase{"u32", signedValue(4294967295), true}, NumberCase{"u32", unsignedValue(4294967296), false},
        NumberCase{"i64", signedValue(lowest64), true}, NumberCase{"i64", unsignedValue(highest64), true},
        NumberCase{"i64", unsignedValue(9223372036854775808u), false},
        NumberCase{"u64", signedValue(-1), false}, NumberCase{"u64", unsignedValue(highestUnsigned64), true},
        NumberCase{"flag", signedValue(-1), false}, NumberCase{"flag", signedValue(1), true},
        NumberCase{"flag", unsignedValue(2), false}, NumberCase{"i32", Value(true), true}));

TEST(Value, TakesNumbersOfEveryWidth) {
    EXPECT_EQ(Value(5u), unsignedValue(5));
    EXPECT_EQ(Value(std::uint8_t{255}), unsignedValue(255));
    EXPECT_EQ(Value(std::uint16_t{5}), unsignedValue(5));
    EXPECT_EQ(Value(std::size_t{5}), unsignedValue(5));
    EXPECT_EQ(Value(5), signedValue(5));
    EXPECT_EQ(Value(std::int8_t{-5}), signedValue(-5));
    EXPECT_EQ(Value(-5L), signedValue(-5));
    EXPECT_EQ(Value(-5LL), signedValue(-5));
    EXPECT_TRUE(std::holds_alternative<bool>(Value(true).data));
    EXPECT_EQ(Value("text"), text("text"));
}

TEST(FieldDescriptions, TellNamesAndTypesInOrder) {
    const auto fields = describeFields<Numbers>();
    std::string words;
    for (const auto& field : fields)
        words += field.name + ":" + field.type + " ";
    EXPECT_EQ(words, "u8:u8 i32:i32 u32:u32 i64:i64 u64:u64 flag:bool ");

    const auto info = describeFields<dto::Device::InfoReply>();
    ASSERT_EQ(info.size(), 4u);
    EXPECT_EQ(info[0].type, "text");
    EXPECT_EQ(info[1].type, "{major: u32, minor: u32, bugfix: u32}");
    EXPECT_EQ(info[2].type, "list of {name: text, version: {major: u32, minor: u32, bugfix: u32}}");
    EXPECT_EQ(describeFields<dto::Device::KeyReply>()[0].type, "bytes");
    EXPECT_EQ(describeFields<dto::Base::HeaderStatusGetReply>()[1].type,
              "list of {first: list of text, second: list of text}");
    EXPECT_EQ(methodsDescription().fields()[0].type, "list of {name: text, id: u32}");
}

} // namespace
