#pragma once

#include <iostream>
#include <string_view>

namespace TAVO {

/// Writes a line to the standard error stream.
inline void writeErrorLine(std::string_view line) {
    // An initialiser of a global may get here before the stream is constructed.
    [[maybe_unused]] const std::ios_base::Init streams;
    std::cerr << line << std::endl;
}

} // namespace TAVO
