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

    /// Addresses the device, by a START or repeated START. Returns whether it acknowledges.
    virtual bool address(Direction direction) = 0;
    /// Takes a byte. Returns whether it acknowledges.
    virtual bool write(std::uint8_t byte) = 0;
    /// Returns the next byte.
    virtual std::uint8_t read() = 0;
    /// Ends the transfer.
    virtual void stop() = 0;
};

/// An I2C master with its bus and devices.
///
/// Only sending an address takes simulated time, which the caller lets pass.
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
        /// Number of acknowledged data bytes.
        std::int32_t acknowledged = 0;
        std::vector<std::uint8_t> data;
    };

    struct Options {
        /// How often an unanswered address is retried.
        std::int32_t addressRetryLimit = 0;
        std::int32_t busyTimeout = 100'000;
        std::int32_t stretchTimeout = 25'000;
        bool acknowledgeLastRead = false;
        /// A write ends at the first data byte that is not acknowledged.
        bool stopAtDataNack = true;
        bool operator==(const Options&) const = default;
    };

    /// @throws std::invalid_argument for an address above 0x7F or in use.
    void attach(std::uint8_t address, std::shared_ptr<I2cDevice> device);

    /// The device at this address, as its own class.
    /// @throws std::out_of_range if there is no device of this class.
    template <class Device = I2cDevice>
    Device& at(std::uint8_t address) const {
        const auto found = devices_.find(address);
        if (found != devices_.end())
            if (auto* device = dynamic_cast<Device*>(found->second.get()))
                return *device;
        throw std::out_of_range("no such device at I2C address " + std::to_string(address));
    }

    /// Reads `count` bytes. Without `start` it continues the current transfer and ignores the address.
    /// @param wait lets simulated time pass: 9 clocks each time the address is sent.
    Outcome read(std::int32_t address, bool start, bool stop, std::int32_t count, const Wait& wait);
    /// Writes `data`. Without `start` it continues the current transfer and ignores the address.
    Outcome write(std::int32_t address, bool start, bool stop, std::span<const std::uint8_t> data,
                  const Wait& wait);
    /// Writes `data`, then reads `count` bytes after a repeated START. Skips a part without bytes.
    Outcome transfer(std::int32_t address, std::span<const std::uint8_t> data, std::int32_t count,
                     const Wait& wait);

    const Options& options() const noexcept { return options_; }
    /// Returns false and changes nothing if a retry limit or timeout is out of range.
    bool setOptions(const Options& options);

    /// Clocks per second: the highest frequency the divider allows that is not above the requested one.
    std::uint32_t frequency() const noexcept { return baseFrequency / divider_; }
    std::uint32_t divider() const noexcept { return divider_; }
    /// Returns false if the frequency is out of range.
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
