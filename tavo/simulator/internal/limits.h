#pragma once

#include <cstddef>

/// Limits on what the simulator keeps of a request.
namespace TAVO::simulator::limits {

/// Each text of a reservation, which outlives the connection.
inline constexpr std::size_t reservationText = std::size_t{64} << 10;
/// The message of an error, which may quote the client.
inline constexpr std::size_t messageBytes = 4096;
/// Parameters in a CallRecord; larger ones are left out.
inline constexpr std::size_t recordedBytes = std::size_t{8} << 20;

} // namespace TAVO::simulator::limits
