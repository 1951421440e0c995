#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

/// The grids that i2cdetect and i2cdump print.
namespace TAVO::cli {

/// Addresses of a bus, or registers of a device. Both ends are included.
struct NumberRange {
    std::uint32_t first = 0;
    std::uint32_t last = 0;
    std::uint32_t size() const { return last - first + 1; }
    bool operator==(const NumberRange&) const = default;
};

/// `A-B`, each decimal, hexadecimal after 0x, or octal after 0.
/// @throws std::invalid_argument unless both are numbers up to `highest` and A <= B.
NumberRange parseRange(const std::string& text, std::uint32_t highest);

/// @param found the addresses in `range` that acknowledged.
std::string detectGrid(NumberRange range, const std::vector<std::uint32_t>& found);

/// The byte in a register; empty if the device did not acknowledge.
using RegisterByte = std::optional<std::uint8_t>;

/// @param bytes registers from `first` on.
/// @param wide whether register numbers have 16 bits.
std::string dumpGrid(std::uint32_t first, std::span<const RegisterByte> bytes, bool wide);

} // namespace TAVO::cli
