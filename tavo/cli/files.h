#pragma once

#include <string>

namespace TAVO::cli {

/// Everything in the file, - being the standard input.
/// @throws Failure (usage) when it cannot be read.
std::string readFile(const std::string& path);

} // namespace TAVO::cli
