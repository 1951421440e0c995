#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

/// The grids in which i2cdetect and i2cdump show a bus and a device.
namespace TAVO::cli {

/// Addresses of a bus, or registers of a device; both ends are part of it.
struct NumberRange {
    std::uint32_t first = 0;
    std::uint32_t last = 0;
    std::uint32_t size() const { return last - first + 1; }
    bool operator==(const NumberRange&) const = default;
};

/// `A-B`, each decimal, hexadecimal after 0x, or octal after 0.
/// @throws std::invalid_argument unless both are numbers up to `highest` and A is not above B.
NumberRange parseRange(const std::string& text, std::uint32_t highest);

/// @param found the addresses in `range` that acknowledged.
std::string detectGrid(NumberRange range, const std::vector<std::uint32_t>& found);

/// A register's byte, or nothing where the device did not acknowledge.
using RegisterByte = std::optional<std::uint8_t>;

/// @param bytes   those of the registers from `first` on.
/// @param wide    whether registers have 16-bit numbers.
std::string dumpGrid(std::uint32_t first, std::span<const RegisterByte> bytes, bool wide);

} // namespace TAVO::cli
