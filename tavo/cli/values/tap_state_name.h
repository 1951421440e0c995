#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace TAVO::cli {

/// The state's name in IEEE 1149.1. The numbers run from Test-Logic-Reset and Run-Test/Idle over the data
/// register's column to Update-IR; a device may number them otherwise.
std::optional<std::string_view> tapStateName(std::int32_t number);

/// The number that a name or a decimal number stands for; letter case and all but letters and digits count
/// for nothing in names.
/// @throws std::invalid_argument that lists the names.
std::int32_t parseTapState(std::string_view text);

/// "1 Run-Test/Idle"
std::string tapStateText(std::int32_t number);

} // namespace TAVO::cli
