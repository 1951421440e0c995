#pragma once

#include <string>

namespace TAVO::cli {

/// The whole content of the file; "-" is standard input.
/// @throws Failure (usage) if it cannot be read.
std::string readFile(const std::string& path);

} // namespace TAVO::cli
