#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace TAVO::cli {

/// A type of SPI flash, as programmers recognise it.
struct FlashChip {
    std::string name;
    std::uint32_t size;
    /// Manufacturer and device, as "read identification" tells.
    std::array<std::uint8_t, 3> identity;
    /// The device, as the older commands tell it.
    std::uint8_t signature;
};

/// All known types; the first of each size is the usual one.
const std::vector<FlashChip>& flashChips();

std::vector<std::string> flashChipNames();

/// The chip for a memory of that many bytes.
/// @param name of the chip; empty for the usual one of exactly that size.
/// @throws Failure (usage) if there is no such chip, or if it is larger than the memory.
const FlashChip& chooseFlashChip(std::uint32_t memory, const std::string& name);

} // namespace TAVO::cli
