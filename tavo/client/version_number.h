#pragma once

#include <cstdint>
#include <string>

/// The version of this library. The build reads the three numbers from this header, so that the package, the
/// shared library's name and these constants always agree.

namespace TAVO {

/// Changes when applications have to be adapted.
inline constexpr std::int32_t ClientLibraryMajorVersion = 2;
/// Changes when something is added.
inline constexpr std::int32_t ClientLibraryMinorVersion = 0;
/// Changes when something is mended.
inline constexpr std::int32_t ClientLibraryBugfixVersion = 0;

/// The version as text, with four parts. TAVO::Version parses its first three.
inline const std::string ClientLibraryVersion = "2.0.0.0";

} // namespace TAVO
