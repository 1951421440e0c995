#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace TAVO::cli {

/// Splits a line into words at blanks outside quotes. Single quotes keep everything literal; within double
/// quotes \" and \\ mean the quote and the backslash. A word that starts with # begins a comment.
/// @throws std::invalid_argument if a quote is not closed.
std::vector<std::string> splitWords(std::string_view line);

} // namespace TAVO::cli
