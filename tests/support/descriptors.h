#pragma once

#include <cstddef>

namespace support {

/// Number of descriptors that this process has open; on Windows, of sockets.
std::size_t openDescriptors();

} // namespace support
