#pragma once

#include <concepts>
#include <cstdint>
#include <span>
#include <string_view>
#include <type_traits>

#include <nlohmann/json.hpp>

#include <tavo/cli/values/sink.h>

namespace TAVO::cli {

/// One JSON document, written as it is made: two blanks for each level, a line for each element. Characters
/// that are not to be seen, see isUnseen(), are escaped.
///
/// Each value follows a key or stands in an array. Keys are the tool's own and come in alphabetical order.
class JsonWriter {
public:
    explicit JsonWriter(Sink& sink)
        : sink_(sink) {}

    /// Writes an object, whose members `fill` writes.
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
    /// What is written next is the value of this key.
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
    /// A text; what is not UTF-8 in it is replaced by U+FFFD.
    void text(std::string_view value);
    /// A text without loss: `{"hex-text": "..."}` when it is not UTF-8.
    void exactText(std::string_view value);
    /// `{"hex": "..."}`
    void bytes(std::span<const std::uint8_t> value);
    /// A text of hexadecimal digits, two for each byte.
    void hexadecimal(std::span<const std::uint8_t> value);
    /// A document that is at hand.
    void write(const nlohmann::json& document);

private:
    void open(char bracket);
    void close(char bracket);
    /// What stands before a value.
    void begin();
    void newLine();
    void plain(std::string_view value);
    void signedNumber(std::int64_t value);
    void unsignedNumber(std::uint64_t value);

    Sink& sink_;
    int depth_ = 0;
    bool first_ = true;
    bool behindKey_ = false;
};

} // namespace TAVO::cli
