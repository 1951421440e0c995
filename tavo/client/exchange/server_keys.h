#pragma once

#include <array>
#include <cstdint>
#include <span>

#include <tavo/client/export.h>

namespace TAVO {

/// One of the keys by which an appliance is recognised, with the two flags that the key stands for.
struct ServerKey {
    bool firstFlag;
    bool secondFlag;
    std::array<std::uint8_t, 16> key;
};

/// The four known keys, in the order of their flags: (0, 0), (0, 1), (1, 0), (1, 1).
///
/// They are fixed when the library is built, from the file that the CMake cache variable
/// TAVO_SERVER_KEYS_FILE names. The span is valid for the life of the program and may be read from any
/// thread.
TAVO_API std::span<const ServerKey> serverKeys() noexcept;

} // namespace TAVO
