#pragma once

#include <cstdint>

/// How much of a request the simulator takes.
namespace TAVO::simulator::limits {

/// Parameters of one call.
inline constexpr std::uint32_t parameterBytes = 64u << 20;
/// The whole request.
inline constexpr std::uint64_t requestBytes = 256u << 20;

} // namespace TAVO::simulator::limits
