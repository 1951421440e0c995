#include <tavo/json/json_writer.h>

#include <array>
#include <charconv>
#include <string>
#include <utility>

#include <tavo/json/utf8.h>

namespace TAVO::json {

namespace {

/// The fast path for most characters.
bool standsForItself(char c) { return c >= 0x20 && c < 0x7F && c != '"' && c != '\\'; }

constexpr std::string_view digits = "0123456789abcdef";

/// The escape of a unit of UTF-16.
std::string unitEscape(char32_t unit) {
    return {'\\', 'u', digits[unit >> 12], digits[unit >> 8 & 15], digits[unit >> 4 & 15], digits[unit & 15]};
}

template <class Number>
std::string_view decimal(Number value, std::span<char> space) {
    const auto end = std::to_chars(space.data(), space.data() + space.size(), value).ptr;
    return {space.data(), end};
}

/// The escape of a character; empty if it needs none.
std::string escapeOf(char32_t codePoint) {
    constexpr std::string_view named = "\"\\\b\f\n\r\t";
    constexpr std::string_view names = "\"\\bfnrt";
    if (codePoint < 0x80)
        if (const auto found = named.find(static_cast<char>(codePoint)); found != std::string_view::npos)
            return {'\\', names[found]};
    if (!isUnseen(codePoint))
        return {};
    if (codePoint <= 0xFFFF)
        return unitEscape(codePoint);
    const auto offset = codePoint - 0x10000;
    return unitEscape(0xD800 + (offset >> 10)) + unitEscape(0xDC00 + (offset & 0x3FF));
}

} // namespace

void JsonWriter::newLine() {
    if (layout_ == Layout::line)
        return;
    sink_.write("\n");
    for (int level = 0; level < depth_; ++level)
        sink_.write("  ");
}

void JsonWriter::begin() {
    if (!std::exchange(behindKey_, false) && depth_ > 0) {
        if (!first_)
            sink_.write(layout_ == Layout::line ? ", " : ",");
        newLine();
    }
    first_ = false;
}

void JsonWriter::open(char bracket) {
    begin();
    sink_.write({&bracket, 1});
    ++depth_;
    first_ = true;
}

void JsonWriter::close(char bracket) {
    --depth_;
    if (!std::exchange(first_, false))
        newLine();
    sink_.write({&bracket, 1});
}

JsonWriter& JsonWriter::key(std::string_view name) {
    text(name);
    sink_.write(": ");
    behindKey_ = true;
    return *this;
}

void JsonWriter::plain(std::string_view value) {
    begin();
    sink_.write(value);
}

void JsonWriter::signedNumber(std::int64_t value) {
    std::array<char, 20> space{};
    plain(decimal(value, space));
}

void JsonWriter::unsignedNumber(std::uint64_t value) {
    std::array<char, 20> space{};
    plain(decimal(value, space));
}

void JsonWriter::text(std::string_view value) {
    plain("\"");
    std::size_t unchanged = 0;
    for (std::size_t at = 0; at < value.size();) {
        if (standsForItself(value[at])) {
            ++at;
            continue;
        }
        const auto head = utf8Head(value.substr(at));
        const auto changed = head.valid ? escapeOf(head.codePoint) : "\xef\xbf\xbd";
        if (!changed.empty()) {
            sink_.write(value.substr(unchanged, at - unchanged));
            sink_.write(changed);
            unchanged = at + head.length;
        }
        at += head.length;
    }
    sink_.write(value.substr(unchanged));
    sink_.write("\"");
}

void JsonWriter::exactText(std::string_view value) {
    if (isUtf8(value)) {
        text(value);
        return;
    }
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(value.data());
    object([&] { key("hex-text").hexadecimal({bytes, value.size()}); });
}

void JsonWriter::bytes(std::span<const std::uint8_t> value) {
    object([&] { key("hex").hexadecimal(value); });
}

void JsonWriter::hexadecimal(std::span<const std::uint8_t> value) {
    plain("\"");
    for (const auto byte : value) {
        const std::array pair = {digits[byte >> 4], digits[byte & 15]};
        sink_.write({pair.data(), pair.size()});
    }
    sink_.write("\"");
}

void JsonWriter::write(const nlohmann::json& document) {
    switch (document.type()) {
    case nlohmann::json::value_t::object:
        object([&] {
            for (const auto& [name, member] : document.items())
                key(name).write(member);
        });
        break;
    case nlohmann::json::value_t::array:
        array([&] {
            for (const auto& element : document)
                write(element);
        });
        break;
    case nlohmann::json::value_t::string:
        text(document.get_ref<const std::string&>());
        break;
    default:
        plain(document.dump());
    }
}

} // namespace TAVO::json
