#pragma once

#include <string>
#include <vector>

#include <tavo/cli/program.h>

namespace TAVO::cli {

/// What the arguments ask for: an action or a help text. Only parses: runs no action, reads and writes
/// nothing.
/// @param argv starts with the program's name.
/// @throws Failure (usage)
Program parseArguments(int argc, const char* const* argv);

/// The same for the words of a line that is for an open device: it takes no options of the connection and no
/// --json.
Program parseLine(std::vector<std::string> words);

} // namespace TAVO::cli
