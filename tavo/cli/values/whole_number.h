#pragma once

#include <tavo/config/whole_number.h>

namespace TAVO::cli {

using config::boundsText;
using config::parseWholeNumber;
using config::WholeNumber;

} // namespace TAVO::cli
