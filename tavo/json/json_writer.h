#pragma once

#include <concepts>
#include <cstdint>
#include <span>
#include <string_view>
#include <type_traits>

#include <nlohmann/json.hpp>

#include <tavo/json/destination.h>

namespace TAVO::json {

/// Writes one JSON document piece by piece: two blanks per level, one line per element; or all of it in one
/// line. Escapes invisible characters, see isUnseen().
///
/// Each value follows a key or stands in an array. Keys must come in alphabetical order and need no escapes.
class JsonWriter {
public:
    enum class Layout { indented, line };

    explicit JsonWriter(Destination& sink, Layout layout = Layout::indented)
        : sink_(sink)
        , layout_(layout) {}

    /// Writes an object; `fill` writes its members.
    template <class Fill>
    void object(Fill fill) {
        open('{');
        fill();
        close('}');
    }
    template <class Fill>
    void array(Fill fill) {
        open('[');
        fill();
        close(']');
    }
    /// The next value written belongs to this key.
    JsonWriter& key(std::string_view name);

    void null() { plain("null"); }
    void flag(bool value) { plain(value ? "true" : "false"); }
    template <std::integral Number>
    void number(Number value) {
        if constexpr (std::is_signed_v<Number>)
            signedNumber(value);
        else
            unsignedNumber(value);
    }
    /// Writes a text. Replaces bytes that are not UTF-8 by U+FFFD.
    void text(std::string_view value);
    /// Writes a text without loss: as `{"hex-text": "..."}` if it is not UTF-8.
    void exactText(std::string_view value);
    /// Writes `{"hex": "..."}`.
    void bytes(std::span<const std::uint8_t> value);
    /// Writes a text of hexadecimal digits, two per byte.
    void hexadecimal(std::span<const std::uint8_t> value);
    /// Writes a complete document.
    void write(const nlohmann::json& document);

private:
    void open(char bracket);
    void close(char bracket);
    /// Writes the comma, line break and indentation before a value.
    void begin();
    void newLine();
    void plain(std::string_view value);
    void signedNumber(std::int64_t value);
    void unsignedNumber(std::uint64_t value);

    Destination& sink_;
    Layout layout_;
    int depth_ = 0;
    bool first_ = true;
    bool behindKey_ = false;
};

} // namespace TAVO::json
