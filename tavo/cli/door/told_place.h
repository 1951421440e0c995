#pragma once

#include <string>

#include <tavo/cli/output.h>

namespace TAVO::cli {

/// Tells where clients are awaited. A server goes on for them when the one who started it has gone.
void tellIfAnybodyReads(Output& output, const std::string& line);

} // namespace TAVO::cli
