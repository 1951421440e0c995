#pragma once

#include <cstddef>
#include <string_view>

namespace TAVO::cli {

/// What a text begins with.
struct Utf8Head {
    /// How many bytes it takes, at least 1.
    std::size_t length = 1;
    char32_t codePoint = 0;
    /// Otherwise these bytes are the longest beginning of a code point that there is, or one byte that no
    /// code point begins with.
    bool valid = false;
};

/// @param text not empty.
Utf8Head utf8Head(std::string_view text) noexcept;

bool isUtf8(std::string_view text) noexcept;

/// Whether a code point is not to be seen, or changes how what is around it is seen: control characters (C0,
/// DEL, C1), the separators of lines and paragraphs, bidirectional controls, characters without width, tags
/// and the other format controls that stand beside them.
bool isUnseen(char32_t codePoint) noexcept;

} // namespace TAVO::cli
