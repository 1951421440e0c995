#pragma once

#include <cstdint>

/// Return codes of the objects in this library; 0 is success.
namespace TAVO::simulator::return_code {

inline constexpr std::int32_t failure = -1;
inline constexpr std::int32_t done = 0;
/// An argument is out of range or malformed.
inline constexpr std::int32_t badArgument = 1;
/// The compared bits differ.
inline constexpr std::int32_t mismatch = 2;
/// The function is switched off.
inline constexpr std::int32_t disabled = 3;
/// Nobody acknowledged.
inline constexpr std::int32_t notAcknowledged = 4;
inline constexpr std::int32_t timedOut = 5;
/// The board has no power, or the port is not open.
inline constexpr std::int32_t notReady = 6;
/// Another user has reserved the object, or an update of it still runs.
inline constexpr std::int32_t busy = 7;

constexpr std::int32_t badUnless(bool accepted) { return accepted ? done : badArgument; }

} // namespace TAVO::simulator::return_code
