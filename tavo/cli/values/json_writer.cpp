#include <tavo/cli/values/json_writer.h>

#include <array>
#include <string>
#include <utility>

#include <fmt/format.h>

#include <tavo/cli/values/utf8.h>

namespace TAVO::cli {

namespace {

/// The fast path for most characters.
bool standsForItself(char c) { return c >= 0x20 && c < 0x7F && c != '"' && c != '\\'; }

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
        return fmt::format("\\u{:04x}", static_cast<std::uint32_t>(codePoint));
    const auto offset = static_cast<std::uint32_t>(codePoint) - 0x10000;
    return fmt::format("\\u{:04x}\\u{:04x}", 0xD800 + (offset >> 10), 0xDC00 + (offset & 0x3FF));
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

void JsonWriter::signedNumber(std::int64_t value) { plain(fmt::format_int(value).c_str()); }
void JsonWriter::unsignedNumber(std::uint64_t value) { plain(fmt::format_int(value).c_str()); }

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
        constexpr const char* digit = "0123456789abcdef";
        const std::array pair = {digit[byte >> 4], digit[byte & 15]};
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

} // namespace TAVO::cli
