#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <utility>

namespace TAVOX {

// Unrolled, which compilers turn into one instruction or two.
namespace byte_order {

template <std::unsigned_integral Number, std::size_t... Index>
constexpr void store(std::uint8_t* bytes, Number value, std::index_sequence<Index...>) noexcept {
    ((bytes[Index] = static_cast<std::uint8_t>(value >> (8 * (sizeof...(Index) - 1 - Index)))), ...);
}

template <std::unsigned_integral Number, std::size_t... Index>
constexpr Number load(const std::uint8_t* bytes, std::index_sequence<Index...>) noexcept {
    return static_cast<Number>(
        (... | (static_cast<Number>(bytes[Index]) << (8 * (sizeof...(Index) - 1 - Index)))));
}

} // namespace byte_order

/// Stores `value` in network byte order (big-endian), whatever the machine's own order.
/// @param bytes room for sizeof(Number) bytes; needs no alignment.
template <std::unsigned_integral Number>
constexpr void storeBigEndian(std::uint8_t* bytes, Number value) noexcept {
    byte_order::store(bytes, value, std::make_index_sequence<sizeof(Number)>());
}

/// Reads back what storeBigEndian() stored: the sizeof(Number) bytes at `bytes`.
template <std::unsigned_integral Number>
constexpr Number loadBigEndian(const std::uint8_t* bytes) noexcept {
    return byte_order::load<Number>(bytes, std::make_index_sequence<sizeof(Number)>());
}

} // namespace TAVOX
