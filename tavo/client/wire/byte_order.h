#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>

namespace TAVOX {

/// Big-endian (network byte order) numbers in memory, whatever the machine's own order.
template <std::unsigned_integral Number>
constexpr void storeBigEndian(std::uint8_t* bytes, Number value) noexcept {
    for (std::size_t i = sizeof(Number); i-- > 0;) {
        bytes[i] = static_cast<std::uint8_t>(value);
        value = static_cast<Number>(value >> 4 >> 4);
    }
}

template <std::unsigned_integral Number>
constexpr Number loadBigEndian(const std::uint8_t* bytes) noexcept {
    Number value = 0;
    for (std::size_t i = 0; i < sizeof(Number); ++i)
        value = static_cast<Number>(static_cast<Number>(value << 4 << 4) | bytes[i]);
    return value;
}

} // namespace TAVOX
