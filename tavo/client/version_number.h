#pragma once

#include <cstdint>
#include <string>

// The version of this library. The build reads the three numbers from here, so the package, the name of the
// shared library and these constants always agree.

namespace TAVO {

/// Grows with changes that applications must be adapted to.
inline constexpr std::int32_t ClientLibraryMajorVersion = 2;
/// Grows with additions.
inline constexpr std::int32_t ClientLibraryMinorVersion = 0;
/// Grows with corrections.
inline constexpr std::int32_t ClientLibraryBugfixVersion = 0;

/// The version as text, with four parts. TAVO::Version parses its first three.
inline const std::string ClientLibraryVersion = "2.0.0.0";

} // namespace TAVO
