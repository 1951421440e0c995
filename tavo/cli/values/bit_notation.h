#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include <tavo/jtag/bit_string.h>

namespace TAVO::cli {

using jtag::BitString;

/// How a bit string is written: as a hexadecimal number, lowest bit shifted first, or as bytes in shift
/// order, lowest bit of each first.
enum class BitNotation { number, bytes };

/// Parses `size` bits. A number may start with 0x and is padded with zeros; bytes are pairs of digits, as
/// many as the bits need.
/// @throws std::invalid_argument for anything else, and if `text` does not fit in `size` bits.
BitString parseBits(std::size_t size, std::string_view text, BitNotation notation);

/// A number as 0x and all digits, bytes as pairs of digits; empty for no bits.
std::string bitsText(const BitString& bits, BitNotation notation);

} // namespace TAVO::cli
