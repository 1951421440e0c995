#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace TAVO::cli {

/// The whole content of the file; "-" is standard input.
/// @throws Failure (usage) if it cannot be read.
std::string readFile(const std::string& path);

/// The same for something to be written to a device.
/// @throws Failure (usage) also if it is empty.
std::vector<std::uint8_t> readImage(const std::string& path);

} // namespace TAVO::cli
