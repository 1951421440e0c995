#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

#include <tavo/simulator/export.h>

namespace TAVO::simulator {

/// A device on a simulated I2C bus.
class TAVO_SIMULATOR_API I2cDevice {
public:
    enum class Direction { write, read };

    virtual ~I2cDevice();

    /// The device is addressed, by a START or a repeated one. Returns whether it acknowledges.
    virtual bool address(Direction direction) = 0;
    /// Takes a byte; returns whether it acknowledges it.
    virtual bool write(std::uint8_t byte) = 0;
    /// Gives the next byte.
    virtual std::uint8_t read() = 0;
    /// The transfer ends.
    virtual void stop() = 0;
};

/// An I2C master with its bus and devices.
///
/// Only sending addresses takes simulated time: whoever calls lets it pass.
class TAVO_SIMULATOR_API I2cBus {
public:
    using Wait = std::function<void(std::uint64_t microseconds)>;

    static constexpr std::int32_t largestCount = 65536;
    static constexpr std::int32_t largestRetryLimit = 1000;
    static constexpr std::int32_t slowest = 1'000;
    static constexpr std::int32_t fastest = 1'000'000;
    static constexpr std::int32_t defaultFrequency = 100'000;
    static constexpr std::uint32_t baseFrequency = 48'000'000;

    struct Outcome {
        /// One of return_code: done, badArgument or notAcknowledged.
        std::int32_t code = 0;
        /// Data bytes that were acknowledged.
        std::int32_t acknowledged = 0;
        std::vector<std::uint8_t> data;
    };

    struct Options {
        /// How often an unanswered address is tried again.
        std::int32_t addressRetryLimit = 0;
        std::int32_t busyTimeout = 100'000;
        std::int32_t stretchTimeout = 25'000;
        bool acknowledgeLastRead = false;
        /// A write ends at the first data byte that nobody acknowledges.
        bool stopAtDataNack = true;
        bool operator==(const Options&) const = default;
    };

    /// @throws std::invalid_argument for an address above 0x7F or one that is taken.
    void attach(std::uint8_t address, std::shared_ptr<I2cDevice> device);

    /// The device at that address as its own class.
    /// @throws std::out_of_range when there is none of that class.
    template <class Device = I2cDevice>
    Device& at(std::uint8_t address) const {
        const auto found = devices_.find(address);
        if (found != devices_.end())
            if (auto* device = dynamic_cast<Device*>(found->second.get()))
                return *device;
        throw std::out_of_range("no such device at I2C address " + std::to_string(address));
    }

    /// Reads `count` bytes. Without `start` the transfer under way goes on, whatever the address.
    /// @param wait lets simulated time pass, 9 clocks for each time that the address is sent.
    Outcome read(std::int32_t address, bool start, bool stop, std::int32_t count, const Wait& wait);
    /// Writes `data`. Without `start` the transfer under way goes on, whatever the address.
    Outcome write(std::int32_t address, bool start, bool stop, std::span<const std::uint8_t> data,
                  const Wait& wait);
    /// Writes `data`, and reads `count` bytes behind a repeated START; a part of no bytes is left out.
    Outcome transfer(std::int32_t address, std::span<const std::uint8_t> data, std::int32_t count,
                     const Wait& wait);

    const Options& options() const noexcept { return options_; }
    /// False, and nothing changes, for a retry limit or a timeout out of range.
    bool setOptions(const Options& options);

    /// Clocks per second: the nearest frequency not above the one asked for that the divider reaches.
    std::uint32_t frequency() const noexcept { return baseFrequency / divider_; }
    std::uint32_t divider() const noexcept { return divider_; }
    /// False for a frequency out of range.
    bool setFrequency(std::int32_t frequency);

private:
    bool begin(std::int32_t address, I2cDevice::Direction direction, const Wait& wait);
    bool underWay(I2cDevice::Direction direction) const;
    void end();

    std::map<std::uint8_t, std::shared_ptr<I2cDevice>> devices_;
    std::shared_ptr<I2cDevice> selected_;
    I2cDevice::Direction direction_ = I2cDevice::Direction::write;
    Options options_;
    std::uint32_t divider_ = baseFrequency / defaultFrequency;
};

} // namespace TAVO::simulator
