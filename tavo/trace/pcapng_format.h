#pragma once

#include <cstdint>

/// Numbers of the pcapng file format.
namespace TAVO::trace::pcapng {

inline constexpr std::uint32_t sectionHeader = 0x0A0D0D0A;
inline constexpr std::uint32_t interfaceDescription = 1;
inline constexpr std::uint32_t oldPacket = 2;
inline constexpr std::uint32_t simplePacket = 3;
inline constexpr std::uint32_t enhancedPacket = 6;

inline constexpr std::uint32_t byteOrderMagic = 0x1A2B3C4D;

inline constexpr std::uint16_t endOfOptions = 0;
inline constexpr std::uint16_t userApplication = 4;
inline constexpr std::uint16_t interfaceName = 2;
inline constexpr std::uint16_t timeResolution = 9;
inline constexpr std::uint16_t timeOffset = 14;

/// Link types.
inline constexpr std::uint16_t linkNull = 0;
inline constexpr std::uint16_t linkEthernet = 1;
inline constexpr std::uint16_t linkRaw = 101;
inline constexpr std::uint16_t linkLoop = 108;
inline constexpr std::uint16_t linkLinuxCooked = 113;
inline constexpr std::uint16_t linkIpv4 = 228;
inline constexpr std::uint16_t linkIpv6 = 229;
inline constexpr std::uint16_t linkLinuxCooked2 = 276;

} // namespace TAVO::trace::pcapng
