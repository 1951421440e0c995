#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <vector>

#include <tavo/simulator/export.h>
#include <tavo/simulator/models/i2c_bus.h>

namespace TAVO::simulator {

/// An I2C EEPROM: written in pages that wrap, read on from an address that it keeps.
class TAVO_SIMULATOR_API Eeprom : public I2cDevice {
public:
    struct Geometry {
        /// A power of two.
        std::size_t size = 0;
        std::size_t pageSize = 0;
        /// Bytes of address that a write begins with.
        std::size_t addressBytes = 1;
    };
    static constexpr Geometry bytes256{256, 8, 1};
    static constexpr Geometry kilobytes64{65536, 128, 2};
    /// How long it is busy with storing a page, in microseconds. It acknowledges nothing meanwhile.
    static constexpr std::uint64_t writeCycle = 5'000;

    /// @param content its first bytes; the rest is 0xFF.
    /// @param powered whether it answers at all; empty for always.
    Eeprom(const Geometry& geometry, const std::vector<std::uint8_t>& content,
           std::function<std::uint64_t()> now, std::function<bool()> powered = {});

    const std::vector<std::uint8_t>& content() const noexcept { return content_; }
    /// Replaces its first bytes at once.
    void setContent(const std::vector<std::uint8_t>& content);

    bool address(Direction direction) override;
    bool write(std::uint8_t byte) override;
    std::uint8_t read() override;
    void stop() override;

private:
    Geometry geometry_;
    std::vector<std::uint8_t> content_;
    std::function<std::uint64_t()> now_;
    std::function<bool()> powered_;
    std::size_t position_ = 0;
    std::size_t addressBytesMissing_ = 0;
    // The latch of a page: bytes by position.
    std::map<std::size_t, std::uint8_t> changes_;
    std::uint64_t busyUntil_ = 0;
};

} // namespace TAVO::simulator
