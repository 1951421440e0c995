#pragma once

#include <cstdint>
#include <vector>

#include <tavo/simulator/export.h>

namespace TAVO::simulator {

/// The 256 bytes with which a memory module describes itself (serial presence detect): an unbuffered
/// DDR3-1333 module of 2048 MB, one rank of 8-bit wide chips, with a valid checksum.
TAVO_SIMULATOR_API std::vector<std::uint8_t> spdImage();

} // namespace TAVO::simulator
