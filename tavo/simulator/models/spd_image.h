#pragma once

#include <cstdint>
#include <vector>

#include <tavo/simulator/export.h>

namespace TAVO::simulator {

/// The 256 bytes of serial presence detect data of a memory module: unbuffered DDR3-1333, 2048 MB, one rank
/// of 8-bit chips, valid checksum.
TAVO_SIMULATOR_API std::vector<std::uint8_t> spdImage();

} // namespace TAVO::simulator
