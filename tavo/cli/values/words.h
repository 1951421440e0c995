#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace TAVO::cli {

/// Splits a line into words as a POSIX shell does: at blanks outside quotes. A backslash makes the next
/// character literal, single quotes everything; within double quotes a backslash does so before ", \, $ and `
/// only. A word that starts with # begins a comment. Nothing is expanded.
/// @throws std::invalid_argument if a quote is not closed or a backslash ends the line.
std::vector<std::string> splitWords(std::string_view line);

} // namespace TAVO::cli
