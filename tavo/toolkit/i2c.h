#pragma once

#include <cstdint>
#include <vector>

#include <tavo/client.h>
#include <tavo/toolkit/access.h>

namespace TAVO::toolkit {

/// What a transfer returns when nobody acknowledges, on the simulated modules.
inline constexpr std::int32_t notAcknowledgedCode = 4;
/// The addresses that are usually examined: the others are reserved.
inline constexpr std::uint32_t firstUsualAddress = 0x08, lastUsualAddress = 0x77, lastAddress = 0x7f;

/// Reads a byte from each address, in one exchange.
/// @return those that acknowledged. @throws BadRequest unless first <= last <= lastAddress; what the access
/// throws, also if the bus itself reports an error.
std::vector<std::uint32_t> acknowledgingAddresses(Access& access, const HWDebug::I2c_v1_0& bus,
                                                  std::uint32_t first, std::uint32_t last);

} // namespace TAVO::toolkit
