#pragma once

#include <nlohmann/json.hpp>

#include <tavo/client/transcode/value.h>

/// Values as tests write them by hand. A record is an object, a list an array; a number, a flag and a text
/// are themselves. Bytes are `{"hex": "00ff"}`, and a text that is not UTF-8 is `{"hex-text": "00ff"}`.
namespace support {

nlohmann::json toJson(const TAVO::Value& value);

/// A number keeps the signedness that nlohmann::json has for it.
/// @throws std::invalid_argument for what no record can hold.
TAVO::Value valueIn(const nlohmann::json& node);

} // namespace support
