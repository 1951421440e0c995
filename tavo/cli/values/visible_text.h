#pragma once

#include <cstddef>
#include <iterator>
#include <string>
#include <string_view>
#include <type_traits>

#include <fmt/format.h>

#include <tavo/cli/values/utf8.h>

/// The one way by which a text that is not the tool's own reaches a terminal: names, results and messages of
/// a device, and the user's own words too.
namespace TAVO::cli {

/// How a text shows a code point that isUnseen(), or a byte that is not UTF-8.
struct Escape {
    char text[11];
    std::size_t length;
    std::string_view view() const { return {text, length}; }
};

/// \xNN for C0, DEL and bytes that are not UTF-8, \uNNNN and \UNNNNNNNN for what else is unseen.
Escape escapeOf(std::string_view bytes, const Utf8Head& head) noexcept;

/// Hands `take` the text in pieces in which everything is to be seen and nothing steers a terminal: it takes
/// one line.
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
            // Of bytes that are no code point each is shown by itself.
            for (std::size_t i = 0; i < (head.valid ? 1 : head.length); ++i)
                take(escapeOf(text.substr(at + i, head.length), head).view());
            plain = at + head.length;
        }
        at += head.length;
    }
    take(text.substr(plain));
}

/// The text as forVisiblePieces() has it.
std::string visible(std::string_view text);

/// A text to be formatted as visible() has it, in pieces where it is long.
struct VisibleText {
    std::string_view text;
};

} // namespace TAVO::cli

template <>
struct fmt::formatter<TAVO::cli::VisibleText> : fmt::formatter<std::string_view> {
    template <class Context>
    auto format(const TAVO::cli::VisibleText& shown, Context& context) const {
        // Of a longer text no width is left to fill.
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
