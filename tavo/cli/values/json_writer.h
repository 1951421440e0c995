#pragma once

#include <tavo/cli/values/sink.h>
#include <tavo/json/json_writer.h>

namespace TAVO::cli {

using json::JsonWriter;

} // namespace TAVO::cli
