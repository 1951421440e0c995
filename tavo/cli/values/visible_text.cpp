#include <tavo/cli/values/visible_text.h>

namespace TAVO::cli {

Escape escapeOf(std::string_view bytes, const Utf8Head& head) noexcept {
    Escape escape{};
    const auto put = [&escape](char kind, unsigned long number, int digits) {
        constexpr const char* digit = "0123456789abcdef";
        escape.text[escape.length++] = '\\';
        escape.text[escape.length++] = kind;
        for (int shift = 4 * (digits - 1); shift >= 0; shift -= 4)
            escape.text[escape.length++] = digit[number >> shift & 0xF];
    };
    if (!head.valid || head.codePoint < 0x80)
        put('x', static_cast<unsigned char>(bytes.front()), 2);
    else if (head.codePoint <= 0xFFFF)
        put('u', head.codePoint, 4);
    else
        put('U', head.codePoint, 8);
    return escape;
}

std::string visible(std::string_view text) {
    std::string made;
    forVisiblePieces(text, [&made](std::string_view piece) { made += piece; });
    return made;
}

} // namespace TAVO::cli
