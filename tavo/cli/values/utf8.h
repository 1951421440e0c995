#pragma once

#include <tavo/json/utf8.h>

namespace TAVO::cli {

using json::isUnseen;
using json::isUtf8;
using json::Utf8Head;
using json::utf8Head;

} // namespace TAVO::cli
