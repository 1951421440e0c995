#pragma once

#include <optional>
#include <string>

namespace TAVO::config {

/// The variable's value, unless it is not set or empty. Call it while nothing changes the environment.
std::optional<std::string> environmentVariable(const char* name);

} // namespace TAVO::config
