#include <tavo/json/json_value.h>

#include <charconv>
#include <functional>
#include <set>
#include <stdexcept>
#include <string>
#include <utility>

namespace TAVO::json {

namespace {

using nlohmann::json;

constexpr const char* bytesKey = "hex";
constexpr const char* rawTextKey = "hex-text";
constexpr const char* blockKey = "block";

std::string placeOf(const std::string& path) { return path.empty() ? "the value" : "'" + path + "'"; }

Value::Bytes bytesAt(const std::string& path, const std::string& digits) {
    try {
        return bytesFromHex(digits);
    } catch (const std::invalid_argument& error) {
        throw std::invalid_argument(placeOf(path) + ": " + error.what());
    }
}

bool holdsOnly(const json& node, const char* key) { return node.size() == 1 && node.contains(key); }

/// The text behind the only key of an object.
const std::string* onlyText(const json& node, const char* key) {
    return holdsOnly(node, key) ? node.begin()->get_ptr<const std::string*>() : nullptr;
}

class Reader {
public:
    /// @param blocks null where the document cannot refer to any.
    explicit Reader(const Blocks* blocks)
        : blocks_(blocks) {}

    Value valueAt(const std::string& path, const json& node) const {
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

private:
    Value listAt(const std::string& path, const json& node) const {
        Value::List list;
        for (const auto& element : node)
            list.push_back(valueAt(path + "[" + std::to_string(list.size()) + "]", element));
        return Value(std::move(list));
    }

    Value objectAt(const std::string& path, const json& node) const {
        if (const auto* digits = onlyText(node, bytesKey))
            return Value(bytesAt(path, *digits));
        if (const auto* digits = onlyText(node, rawTextKey)) {
            const auto bytes = bytesAt(path, *digits);
            return Value(std::string(bytes.begin(), bytes.end()));
        }
        if (blocks_ && holdsOnly(node, blockKey))
            return Value(blockAt(path, *node.begin()));
        Value::Record record;
        const auto prefix = path.empty() ? path : path + ".";
        for (const auto& [name, member] : node.items())
            record.push_back({name, valueAt(prefix + name, member)});
        return Value(std::move(record));
    }

    Value::Bytes blockAt(const std::string& path, const json& index) const {
        const auto* number = index.get_ptr<const std::uint64_t*>();
        if (!number || *number >= blocks_->size())
            throw std::invalid_argument(placeOf(path) + ": there is no block " + index.dump() +
                                        "; given are " + std::to_string(blocks_->size()));
        const auto block = (*blocks_)[static_cast<std::size_t>(*number)];
        return {block.begin(), block.end()};
    }

    const Blocks* blocks_;
};

/// Watches a document being parsed.
class DocumentCheck {
public:
    bool operator()(int depth, json::parse_event_t event, const json& parsed) {
        // Also bounds the recursion of everything that follows.
        constexpr int deepestLevel = 64;
        if (depth > deepestLevel)
            throw std::invalid_argument("is nested too deeply");
        if (event == json::parse_event_t::object_start) {
            names_.emplace_back();
        } else if (event == json::parse_event_t::object_end) {
            names_.pop_back();
        } else if (event == json::parse_event_t::key) {
            const auto& name = parsed.get_ref<const std::string&>();
            if (!names_.back().insert(name).second)
                throw std::invalid_argument("gives '" + name + "' twice");
        }
        return true;
    }

private:
    /// Those of each object that has begun.
    std::vector<std::set<std::string>> names_;
};

/// Empties every array and object from below, as the destructor of one that holds others takes memory. The
/// depth is that of a parsed document, so it is bounded.
void dismantle(json& node) noexcept {
    for (auto& inner : node)
        if (inner.is_structured())
            dismantle(inner);
    if (node.is_structured())
        node.clear();
}

} // namespace

Document::~Document() { dismantle(root_); }

Document parseDocument(std::string_view text) {
    DocumentCheck check;
    try {
        return Document(json::parse(text, std::ref(check)));
    } catch (const json::exception& error) {
        // "[json.exception.parse_error.101] parse error at line 1, column 2: ..."
        const std::string_view reason = error.what();
        const auto id = reason.find("] ");
        throw NotJson("is not JSON: " +
                      std::string(id == std::string_view::npos ? reason : reason.substr(id + 2)));
    }
}

Value fromJson(const json& node) { return Reader(nullptr).valueAt("", node); }

Value fromJson(const json& node, Blocks blocks, const std::string& path) {
    return Reader(&blocks).valueAt(path, node);
}

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

} // namespace TAVO::json
