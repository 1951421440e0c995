#pragma once

#include <tavo/json/json_value.h>

namespace TAVO::cli {

using json::bytesFromHex;
using json::fromJson;

} // namespace TAVO::cli
