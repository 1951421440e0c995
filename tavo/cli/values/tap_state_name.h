#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace TAVO::cli {

/// The name of the state in IEEE 1149.1. States are numbered from Test-Logic-Reset and Run-Test/Idle through
/// the data register column to Update-IR; a device may number them differently.
std::optional<std::string_view> tapStateName(std::int32_t number);

/// Parses a name or a decimal number. In names only letters and digits count, in any case.
/// @throws std::invalid_argument that lists the names.
std::int32_t parseTapState(std::string_view text);

/// "1 Run-Test/Idle"
std::string tapStateText(std::int32_t number);

} // namespace TAVO::cli
