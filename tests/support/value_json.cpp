#include <tests/support/value_json.h>

#include <cstdint>
#include <stdexcept>
#include <string>

#include <tests/support/wire_bytes.h>

namespace support {

namespace {

using nlohmann::json;
using TAVO::Value;

bool isUtf8(const std::string& text) {
    try {
        static_cast<void>(json(text).dump());
        return true;
    } catch (const json::type_error&) {
        return false;
    }
}

struct JsonMaker {
    template <class Plain>
    json operator()(Plain value) const {
        return value;
    }
    json operator()(const std::string& value) const {
        return isUtf8(value) ? json(value) : json{{"hex-text", hexOf({value.begin(), value.end()})}};
    }
    json operator()(const Value::Bytes& value) const { return {{"hex", hexOf(value)}}; }
    json operator()(const Value::List& value) const {
        auto made = json::array();
        for (const auto& element : value)
            made.push_back(toJson(element));
        return made;
    }
    json operator()(const Value::Record& value) const {
        auto made = json::object();
        for (const auto& member : value)
            made[member.name] = toJson(member.value);
        return made;
    }
};

Value listIn(const json& node) {
    Value::List list;
    for (const auto& element : node)
        list.push_back(valueIn(element));
    return Value(list);
}

Value objectIn(const json& node) {
    if (node.size() == 1 && node.contains("hex"))
        return Value(bytesFromHex(node["hex"].get<std::string>()));
    if (node.size() == 1 && node.contains("hex-text")) {
        const auto bytes = bytesFromHex(node["hex-text"].get<std::string>());
        return Value(std::string(bytes.begin(), bytes.end()));
    }
    Value::Record record;
    for (const auto& [name, member] : node.items())
        record.push_back({name, valueIn(member)});
    return Value(record);
}

} // namespace

json toJson(const Value& value) { return std::visit(JsonMaker{}, value.data); }

Value valueIn(const json& node) {
    if (node.is_object())
        return objectIn(node);
    if (node.is_array())
        return listIn(node);
    if (node.is_boolean())
        return Value(node.get<bool>());
    if (node.is_string())
        return Value(node.get<std::string>());
    if (node.is_number_unsigned())
        return Value(node.get<std::uint64_t>());
    if (node.is_number_integer())
        return Value(node.get<std::int64_t>());
    throw std::invalid_argument("no field holds " + node.dump());
}

} // namespace support
