#pragma once

#include <tavo/cli/program.h>

namespace TAVO::cli {

/// What the arguments ask for: an action, or the help text that they want to see. Does nothing of it, reads
/// no file and writes nothing.
/// @param argv the program's name comes first.
/// @throws Failure (usage)
Program parseArguments(int argc, const char* const* argv);

} // namespace TAVO::cli
