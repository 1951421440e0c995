#pragma once

#include <cstdint>

/// The return codes of methods that all simulated objects share.
namespace TAVO::simulator::returnCode {

inline constexpr std::int32_t done = 0;
/// An argument is out of range or malformed.
inline constexpr std::int32_t badArgument = 1;
/// What was compared differs.
inline constexpr std::int32_t mismatch = 2;
/// The function is switched off.
inline constexpr std::int32_t disabled = 3;
/// Nobody acknowledged.
inline constexpr std::int32_t notAcknowledged = 4;
inline constexpr std::int32_t timedOut = 5;
/// No power, or not open.
inline constexpr std::int32_t notReady = 6;

} // namespace TAVO::simulator::returnCode
