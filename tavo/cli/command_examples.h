#pragma once

#include <string>
#include <vector>

namespace TAVO::cli {

/// One or two lines that a user might type, as examples of a command.
std::vector<std::string> examplesOf(const std::string& path);

} // namespace TAVO::cli
