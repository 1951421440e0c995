#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include <tavo/cli/session.h>
#include <tavo/cli/values/i2c_grid.h>

/// Complete I2C operations, each in few exchanges.
namespace TAVO::cli {

/// A device on a bus.
struct I2cTarget {
    const HWDebug::I2c_v1_0& bus;
    std::uint32_t address = 0;
    /// Whether register numbers have 16 bits.
    bool wide = false;
};

/// The failure to report if the device does not answer.
Failure notAcknowledged(const I2cTarget& target);

/// Reads a byte from each address, in one exchange.
/// @throws Failure (refused) if the bus itself reports an error.
std::vector<std::uint32_t> acknowledgingAddresses(Session& session, const HWDebug::I2c_v1_0& bus,
                                                  NumberRange range);

/// Reads register by register, in one exchange: for devices that do not advance to the next register.
std::vector<RegisterByte> readEach(Session& session, const I2cTarget& target, NumberRange registers);
/// Reads blocks of consecutive registers, in few exchanges.
std::vector<RegisterByte> readInBlocks(Session& session, const I2cTarget& target, NumberRange registers);
/// Reads consecutive bytes. Without `first`, starts at the device's current position.
/// @throws Failure (refused)
std::vector<std::uint8_t> readRun(Session& session, const I2cTarget& target,
                                  std::optional<std::uint32_t> first, std::uint32_t count);

/// Writes nothing but the number of a register: for devices that then read from there, or that act upon it.
/// @throws Failure (refused)
void writePointer(Session& session, const I2cTarget& target, std::uint32_t number);

/// Writes one transfer per page of registers and waits while the device stores each page. Raises the address
/// retry limit for this and restores it, even after an error.
/// @param verify reads the registers back and compares.
/// @throws Failure (refused)
void writePages(Session& session, const I2cTarget& target, std::uint32_t first,
                std::span<const std::uint8_t> bytes, std::uint32_t pageSize, bool verify);

} // namespace TAVO::cli
