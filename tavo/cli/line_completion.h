#pragma once

#include <string>
#include <vector>

namespace TAVO::cli {

/// What a shell is told of a line of the tool: "files" or "none", whether the name of a file may stand next,
/// and then the words that may, a line each. Names on the device come from a share that runs, or not at all.
/// @param words behind the tool's name; the last is the one to be completed, or empty.
/// @param quoted whether they still have the quotes that the user has typed.
std::string completedLine(std::vector<std::string> words, bool quoted);

} // namespace TAVO::cli
