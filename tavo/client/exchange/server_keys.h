#pragma once

#include <array>
#include <cstdint>
#include <span>

#include <tavo/client/export.h>

namespace TAVO {

/// One of the keys by which the library recognises an appliance, and two flags that the key stands for. What
/// the flags mean is the application's to know.
struct ServerKey {
    bool firstFlag;                   ///< the first flag of the key
    bool secondFlag;                  ///< the second flag of the key
    std::array<std::uint8_t, 16> key; ///< what the appliance answers to "getKey"
};

/// The four known keys, in the order of their flags: (0, 0), (0, 1), (1, 0), (1, 1).
///
/// They come from the file that the CMake cache variable TAVO_SERVER_KEYS_FILE names when the library is
/// built. They live as long as the program, and any thread may read them.
TAVO_API std::span<const ServerKey> serverKeys() noexcept;

} // namespace TAVO
