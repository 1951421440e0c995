#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace TAVO::cli {

/// The words of a line: separated by blanks, which quotes keep together. Between single quotes everything
/// stands for itself; between double quotes \" and \\ stand for the quote and the backslash. A word that
/// begins with # and what follows it are a comment.
/// @throws std::invalid_argument when a quote is not closed.
std::vector<std::string> splitWords(std::string_view line);

} // namespace TAVO::cli
