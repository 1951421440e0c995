#pragma once

#include <string>
#include <string_view>

#include <fmt/format.h>

/// Contains only printable ASCII characters, so a client cannot control the terminal.
inline std::string printableText(std::string_view text) {
    std::string line;
    for (const char character : text) {
        if (character >= ' ' && character <= '~')
            line += character;
        else
            line += fmt::format("\\x{:02x}", static_cast<unsigned char>(character));
    }
    return line;
}
