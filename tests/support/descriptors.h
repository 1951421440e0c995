#pragma once

#include <cstddef>
#include <filesystem>
#include <iterator>

namespace support {

/// Number of descriptors that this process has open.
inline std::size_t openDescriptors() {
    const std::filesystem::directory_iterator entries("/proc/self/fd");
    return static_cast<std::size_t>(std::distance(begin(entries), end(entries)));
}

} // namespace support
