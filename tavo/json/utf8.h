#pragma once

#include <cstddef>
#include <string_view>

namespace TAVO::json {

/// The first code point of a text.
struct Utf8Head {
    /// Its length in bytes, at least 1.
    std::size_t length = 1;
    char32_t codePoint = 0;
    /// If false, these bytes are an incomplete code point, as much of it as there is, or one byte that cannot
    /// start a code point.
    bool valid = false;
};

/// @param text not empty.
Utf8Head utf8Head(std::string_view text) noexcept;

bool isUtf8(std::string_view text) noexcept;

/// Whether a code point is invisible or changes how its neighbours are shown: control characters (C0, DEL,
/// C1), line and paragraph separators, bidirectional controls, zero-width characters, tags and related format
/// controls.
bool isUnseen(char32_t codePoint) noexcept;

} // namespace TAVO::json
