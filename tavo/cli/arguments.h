#pragma once

#include <tavo/cli/program.h>

namespace TAVO::cli {

/// What the arguments ask for: an action or a help text. Only parses: runs no action, reads and writes
/// nothing.
/// @param argv starts with the program's name.
/// @throws Failure (usage)
Program parseArguments(int argc, const char* const* argv);

} // namespace TAVO::cli
