#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace TAVO::cli {

/// One part of a transfer: what is written to or read from a device between two STARTs.
struct I2cMessage {
    std::uint32_t address = 0;
    bool reads = false;
    /// The bytes to read.
    std::uint32_t count = 0;
    /// The bytes to write.
    std::vector<std::uint8_t> data;
    bool operator==(const I2cMessage&) const = default;
};

/// Parses messages as i2ctransfer takes them: `wLENGTH[@ADDRESS] BYTE...` and `rLENGTH[@ADDRESS]`. Without an
/// address a message is for that of the one before it. After the last given byte of a write, `=` repeats it
/// up to the length, `+` and `-` count on from it. Numbers are decimal, hexadecimal after 0x, or octal after
/// 0.
/// @throws std::invalid_argument for anything else.
std::vector<I2cMessage> parseI2cMessages(std::span<const std::string> words);

} // namespace TAVO::cli
