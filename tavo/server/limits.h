#pragma once

#include <cstdint>

/// Limits on what a server accepts from a client.
namespace TAVO::server::limits {

/// Parameters of one call.
inline constexpr std::uint32_t parameterBytes = 64u << 20;
/// The whole request.
inline constexpr std::uint64_t requestBytes = 256u << 20;

} // namespace TAVO::server::limits
