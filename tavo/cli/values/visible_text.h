#pragma once

#include <cstddef>
#include <iterator>
#include <string>
#include <string_view>
#include <type_traits>

#include <fmt/format.h>

#include <tavo/cli/values/utf8.h>

/// Every text that is not the tool's own reaches the terminal through here: the device's names, results and
/// messages, and the user's own words.
namespace TAVO::cli {

/// Replacement for a code point that isUnseen(), or for a byte that is not UTF-8.
struct Escape {
    char text[11];
    std::size_t length;
    std::string_view view() const { return {text, length}; }
};

/// \xNN for C0, DEL and bytes that are not UTF-8, \uNNNN or \UNNNNNNNN for other code points.
Escape escapeOf(std::string_view bytes, const Utf8Head& head) noexcept;

/// Passes the text to `take` in pieces that are fully visible, on one line, and cannot control a terminal.
template <class Take>
void forVisiblePieces(std::string_view text, Take take) {
    std::size_t plain = 0;
    for (std::size_t at = 0; at < text.size();) {
        if (text[at] >= 0x20 && text[at] < 0x7F) {
            ++at;
            continue;
        }
        const auto head = utf8Head(text.substr(at));
        if (!head.valid || isUnseen(head.codePoint)) {
            take(text.substr(plain, at - plain));
            // Bytes that form no code point are shown one by one.
            for (std::size_t i = 0; i < (head.valid ? 1 : head.length); ++i)
                take(escapeOf(text.substr(at + i, head.length), head).view());
            plain = at + head.length;
        }
        at += head.length;
    }
    take(text.substr(plain));
}

/// The text as forVisiblePieces() yields it.
std::string visible(std::string_view text);

/// A text to format like visible(), piece by piece if it is long.
struct VisibleText {
    std::string_view text;
};

} // namespace TAVO::cli

template <>
struct fmt::formatter<TAVO::cli::VisibleText> : fmt::formatter<std::string_view> {
    template <class Context>
    auto format(const TAVO::cli::VisibleText& shown, Context& context) const {
        // A longer text exceeds any field width, so it needs no padding.
        constexpr std::size_t longest = 256;
        if (shown.text.size() <= longest)
            return fmt::formatter<std::string_view>::format(TAVO::cli::visible(shown.text), context);
        auto out = context.out();
        TAVO::cli::forVisiblePieces(shown.text, [&](std::string_view piece) {
            for (const char c : piece)
                *out++ = c;
        });
        return out;
    }
};
