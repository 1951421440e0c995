#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <vector>

#include <tavo/simulator/export.h>
#include <tavo/simulator/models/i2c_bus.h>

namespace TAVO::simulator {

/// An I2C EEPROM: writes wrap within a page, reads continue at an internal address.
class TAVO_SIMULATOR_API Eeprom : public I2cDevice {
public:
    struct Geometry {
        /// A power of two.
        std::size_t size = 0;
        std::size_t pageSize = 0;
        /// Number of address bytes at the start of a write.
        std::size_t addressBytes = 1;
    };
    static constexpr Geometry bytes256{256, 8, 1};
    static constexpr Geometry kilobytes64{65536, 128, 2};
    /// Time to store a page, in microseconds. Meanwhile it acknowledges nothing.
    static constexpr std::uint64_t writeCycle = 5'000;

    /// @param content the first bytes; the rest is 0xFF.
    /// @param powered whether it answers; empty for always.
    Eeprom(const Geometry& geometry, const std::vector<std::uint8_t>& content,
           std::function<std::uint64_t()> now, std::function<bool()> powered = {});

    const std::vector<std::uint8_t>& content() const noexcept { return content_; }
    /// Replaces the first bytes at once.
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
    // The page latch: bytes by position.
    std::map<std::size_t, std::uint8_t> changes_;
    std::uint64_t busyUntil_ = 0;
};

} // namespace TAVO::simulator
