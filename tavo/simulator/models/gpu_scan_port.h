#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include <tavo/simulator/export.h>

namespace TAVO::simulator {

/// The serial scan port of a graphics processor. Each clock shifts out the next bit of a circulating 64-bit
/// pattern, bit 0 first.
class TAVO_SIMULATOR_API GpuScanPort {
public:
    static constexpr std::int32_t mostBits = 65536;
    static constexpr std::int32_t slowest = 1'000;
    static constexpr std::int32_t fastest = 20'000'000;
    static constexpr std::int32_t defaultFrequency = 1'000'000;
    static constexpr std::uint32_t baseFrequency = 40'000'000;
    static constexpr std::uint64_t standardPattern = 0x0123'4567'89AB'CDEF;

    /// The appliance's side of SCK. An undriven pin is pulled down.
    struct Drive {
        bool driven = false;
        bool level = false;
        bool operator==(const Drive&) const = default;
    };

    /// The next bits, with bit i in bit i%8 of byte i/8; empty if the count is out of range.
    std::optional<std::vector<std::uint8_t>> scan(std::int32_t bits);
    /// The bit on SDO, which the next rising edge of SCK shifts out.
    bool sdo() const noexcept { return (pattern_ >> position_ & 1u) != 0; }
    Drive sck() const noexcept { return sck_; }
    /// @param listening whether the far end has power and sees a rising edge.
    void setSck(Drive drive, bool listening = true);

    bool setFrequency(std::int32_t frequency);
    std::uint32_t frequency() const noexcept { return baseFrequency / divider_; }
    std::uint32_t divider() const noexcept { return divider_; }

    /// Whether the port may be used. Only stored here; the remote object checks it.
    bool enabled() const noexcept { return enabled_; }
    void setEnabled(bool enabled) noexcept { enabled_ = enabled; }

    /// Sets a new pattern, starting at its first bit.
    void setPattern(std::uint64_t pattern);
    /// Returns to the initial state.
    void reset() { *this = {}; }

private:
    void advance() noexcept { position_ = (position_ + 1) % 64; }

    std::uint64_t pattern_ = standardPattern;
    unsigned position_ = 0;
    Drive sck_;
    bool enabled_ = true;
    std::uint32_t divider_ = baseFrequency / defaultFrequency;
};

} // namespace TAVO::simulator
