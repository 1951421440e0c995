#pragma once

#include <cstddef>
#include <cstdint>

/// Limits on what the simulator accepts from a client.
namespace TAVO::simulator::limits {

/// Parameters of one call.
inline constexpr std::uint32_t parameterBytes = 64u << 20;
/// The whole request.
inline constexpr std::uint64_t requestBytes = 256u << 20;
/// Each text of a reservation, which outlives the connection.
inline constexpr std::size_t reservationText = std::size_t{64} << 10;
/// The message of an error, which may quote the client.
inline constexpr std::size_t messageBytes = 4096;
/// Parameters in a CallRecord; larger ones are left out.
inline constexpr std::size_t recordedBytes = std::size_t{8} << 20;

} // namespace TAVO::simulator::limits
