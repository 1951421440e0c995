#pragma once

#include <tavo/config/duration.h>

namespace TAVO::cli {

using config::durationText;
using config::parseDuration;

} // namespace TAVO::cli
