#include <tavo/cli/values/json_value.h>

#include <charconv>
#include <stdexcept>
#include <string>
#include <utility>

namespace TAVO::cli {

namespace {

using nlohmann::json;

constexpr const char* bytesKey = "hex";
constexpr const char* rawTextKey = "hex-text";

std::string placeOf(const std::string& path) { return path.empty() ? "the value" : "'" + path + "'"; }

Value::Bytes bytesAt(const std::string& path, const std::string& digits) {
    try {
        return bytesFromHex(digits);
    } catch (const std::invalid_argument& error) {
        throw std::invalid_argument(placeOf(path) + ": " + error.what());
    }
}

Value valueAt(const std::string& path, const json& node);

Value listAt(const std::string& path, const json& node) {
    Value::List list;
    for (const auto& element : node)
        list.push_back(valueAt(path + "[" + std::to_string(list.size()) + "]", element));
    return Value(std::move(list));
}

bool holdsOnly(const json& node, const char* key) {
    return node.size() == 1 && node.contains(key) && node.begin()->is_string();
}

Value objectAt(const std::string& path, const json& node) {
    if (holdsOnly(node, bytesKey))
        return Value(bytesAt(path, node.begin()->get<std::string>()));
    if (holdsOnly(node, rawTextKey)) {
        const auto bytes = bytesAt(path, node.begin()->get<std::string>());
        return Value(std::string(bytes.begin(), bytes.end()));
    }
    Value::Record record;
    const auto prefix = path.empty() ? path : path + ".";
    for (const auto& [name, member] : node.items())
        record.push_back({name, valueAt(prefix + name, member)});
    return Value(std::move(record));
}

Value valueAt(const std::string& path, const json& node) {
    switch (node.type()) {
    case json::value_t::boolean:
        return Value(node.get<bool>());
    case json::value_t::number_integer:
        return Value(node.get<std::int64_t>());
    case json::value_t::number_unsigned:
        return Value(node.get<std::uint64_t>());
    case json::value_t::string:
        return Value(node.get<std::string>());
    case json::value_t::array:
        return listAt(path, node);
    case json::value_t::object:
        return objectAt(path, node);
    case json::value_t::number_float:
        throw std::invalid_argument(placeOf(path) + " must be an integer of at most 64 bits, not " +
                                    node.dump());
    default:
        throw std::invalid_argument(placeOf(path) + " must not be " + node.type_name());
    }
}

} // namespace

Value fromJson(const json& node) { return valueAt("", node); }

std::vector<std::uint8_t> bytesFromHex(std::string_view digits) {
    std::vector<std::uint8_t> bytes;
    while (!digits.empty()) {
        if (digits.front() == ' ') {
            digits.remove_prefix(1);
            continue;
        }
        const auto pair = digits.substr(0, 2);
        std::uint8_t byte = 0;
        const auto [end, error] = std::from_chars(pair.data(), pair.data() + pair.size(), byte, 16);
        if (error != std::errc() || pair.size() != 2 || end != pair.data() + pair.size())
            throw std::invalid_argument("'" + std::string(pair) + "' is not a pair of hexadecimal digits");
        bytes.push_back(byte);
        digits.remove_prefix(2);
    }
    return bytes;
}

} // namespace TAVO::cli
