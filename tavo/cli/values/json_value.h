#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include <nlohmann/json.hpp>

#include <tavo/client/transcode/value.h>

/// Records read from JSON. An object becomes a record, an array a list; numbers, flags and texts stay as they
/// are. JSON has neither bytes nor texts that are not UTF-8, so these are objects with one member: `{"hex":
/// "00ff"}` and `{"hex-text": "00ff"}`.
namespace TAVO::cli {

/// A number keeps the signedness it has in `node`.
/// @throws std::invalid_argument that names the place, for anything no record can hold: null, a number that
///         is not an integer or exceeds 64 bits, bad hexadecimal digits.
Value fromJson(const nlohmann::json& node);

/// Parses pairs of hexadecimal digits. Ignores blanks between pairs.
/// @throws std::invalid_argument for anything else.
std::vector<std::uint8_t> bytesFromHex(std::string_view digits);

} // namespace TAVO::cli
