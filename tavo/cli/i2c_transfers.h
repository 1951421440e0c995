#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include <tavo/cli/session.h>
#include <tavo/cli/values/i2c_grid.h>

/// Whole pieces of work on an I2C bus, each in few exchanges.
namespace TAVO::cli {

/// A device on a bus.
struct I2cTarget {
    const HWDebug::I2c_v1_0& bus;
    std::uint32_t address = 0;
    /// Whether register numbers have 16 bits.
    bool wide = false;
};

/// What is wrong when it does not answer.
Failure notAcknowledged(const I2cTarget& target);

/// Reads a byte from each address, in one exchange.
/// @throws Failure (refused) when the bus itself reports an error.
std::vector<std::uint32_t> acknowledgingAddresses(Session& session, const HWDebug::I2c_v1_0& bus,
                                                  NumberRange range);

/// Reads register by register, in one exchange: right for devices whose reading does not go on by itself.
std::vector<RegisterByte> readEach(Session& session, const I2cTarget& target, NumberRange registers);
/// Reads on from register to register, in few exchanges.
std::vector<RegisterByte> readInBlocks(Session& session, const I2cTarget& target, NumberRange registers);
/// Reads one run of bytes, without a first register from where the device stands.
/// @throws Failure (refused)
std::vector<std::uint8_t> readRun(Session& session, const I2cTarget& target,
                                  std::optional<std::uint32_t> first, std::uint32_t count);

/// Writes, with an own transfer for each page of registers, and waits while the device stores them. For that
/// unanswered addresses are tried again; how often they were before is restored, after errors too.
/// @param verify whether to read the registers back and compare.
/// @throws Failure (refused)
void writePages(Session& session, const I2cTarget& target, std::uint32_t first,
                std::span<const std::uint8_t> bytes, std::uint32_t pageSize, bool verify);

} // namespace TAVO::cli
