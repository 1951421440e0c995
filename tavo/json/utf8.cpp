#include <tavo/json/utf8.h>

#include <algorithm>
#include <cstdint>
#include <iterator>

namespace TAVO::json {

namespace {

struct Range {
    char32_t first;
    char32_t last;
};

constexpr Range unseen[] = {
    {0x00, 0x1F},       // C0
    {0x7F, 0x9F},       // DEL and C1
    {0xAD, 0xAD},       // soft hyphen
    {0x61C, 0x61C},     // Arabic letter mark
    {0x180E, 0x180E},   // Mongolian vowel separator
    {0x200B, 0x200F},   // zero-width space, joiners, direction marks
    {0x2028, 0x202E},   // line and paragraph separators, direction embeddings and overrides
    {0x2060, 0x206F},   // word joiner, invisible operators, direction isolates, deprecated controls
    {0xFEFF, 0xFEFF},   // byte order mark
    {0xFFF9, 0xFFFB},   // interlinear annotations
    {0xE0000, 0xE007F}, // tags
};

/// What may follow the first byte of a code point: the number of bytes, and the limits of the first of them.
struct Continuation {
    std::size_t count;
    std::uint8_t lowest;
    std::uint8_t highest;
};

constexpr Continuation continuationOf(std::uint8_t lead) {
    if (lead >= 0xC2 && lead <= 0xDF)
        return {1, 0x80, 0xBF};
    if (lead >= 0xE0 && lead <= 0xEF)
        return {2, static_cast<std::uint8_t>(lead == 0xE0 ? 0xA0 : 0x80),
                static_cast<std::uint8_t>(lead == 0xED ? 0x9F : 0xBF)};
    if (lead >= 0xF0 && lead <= 0xF4)
        return {3, static_cast<std::uint8_t>(lead == 0xF0 ? 0x90 : 0x80),
                static_cast<std::uint8_t>(lead == 0xF4 ? 0x8F : 0xBF)};
    return {0, 0, 0};
}

} // namespace

Utf8Head utf8Head(std::string_view text) noexcept {
    const auto lead = static_cast<std::uint8_t>(text.front());
    if (lead < 0x80)
        return {1, lead, true};
    auto [count, lowest, highest] = continuationOf(lead);
    if (count == 0)
        return {1, 0, false};
    char32_t codePoint = lead & (0x3Fu >> count);
    for (std::size_t i = 1; i <= count; ++i) {
        const auto byte = i < text.size() ? static_cast<std::uint8_t>(text[i]) : std::uint8_t{0};
        if (byte < lowest || byte > highest)
            return {i, 0, false};
        codePoint = codePoint << 6 | (byte & 0x3Fu);
        lowest = 0x80;
        highest = 0xBF;
    }
    return {count + 1, codePoint, true};
}

bool isUtf8(std::string_view text) noexcept {
    while (!text.empty()) {
        const auto head = utf8Head(text);
        if (!head.valid)
            return false;
        text.remove_prefix(head.length);
    }
    return true;
}

bool isUnseen(char32_t codePoint) noexcept {
    if (codePoint < 0x7F)
        return codePoint < 0x20;
    return std::any_of(std::begin(unseen), std::end(unseen), [codePoint](const Range& range) {
        return codePoint >= range.first && codePoint <= range.last;
    });
}

} // namespace TAVO::json
