#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include <nlohmann/json.hpp>

#include <tavo/client/transcode/value.h>

/// Records read from JSON. An object becomes a record, an array a list; a number, a flag and a text stay what
/// they are. JSON knows neither bytes nor texts that are not UTF-8: objects of one member stand for these
/// two,
/// `{"hex": "00ff"}` and `{"hex-text": "00ff"}`.
namespace TAVO::cli {

/// A number keeps the signedness that `node` has for it.
/// @throws std::invalid_argument that names the place, for what no record can hold: null, a number that is
///         not whole or exceeds 64 bits, wrong hexadecimal digits.
Value fromJson(const nlohmann::json& node);

/// The bytes that pairs of hexadecimal digits stand for; blanks between the pairs count for nothing.
/// @throws std::invalid_argument for anything else.
std::vector<std::uint8_t> bytesFromHex(std::string_view digits);

} // namespace TAVO::cli
