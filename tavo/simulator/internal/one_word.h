#pragma once

#include <string>
#include <string_view>

namespace TAVO::simulator {

inline constexpr std::string_view hexDigits = "0123456789abcdef";

/// The name as one word of printable ASCII characters: others, and blanks, become `\xNN`.
inline std::string oneWord(std::string_view name) {
    std::string word;
    for (const char character : name) {
        const auto code = static_cast<unsigned char>(character);
        if (character > ' ' && character <= '~')
            word += character;
        else
            word.append({'\\', 'x', hexDigits[code >> 4], hexDigits[code & 0x0F]});
    }
    return word;
}

} // namespace TAVO::simulator
