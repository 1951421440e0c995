#include <tavo/simulator/models/i2c_bus.h>

#include <stdexcept>
#include <utility>

#include <tavo/simulator/return_codes.h>

namespace TAVO::simulator {

namespace {

constexpr std::uint8_t highestAddress = 0x7F;
constexpr std::uint64_t clocksOfAddress = 9;

bool isAddress(std::int32_t address) { return address >= 0 && address <= highestAddress; }
bool isCount(std::int32_t count) { return count >= 0 && count <= I2cBus::largestCount; }

I2cBus::Outcome refusal(std::int32_t code) { return {code, 0, {}}; }

} // namespace

I2cDevice::~I2cDevice() = default;

void I2cBus::attach(std::uint8_t address, std::shared_ptr<I2cDevice> device) {
    if (address > highestAddress || !devices_.emplace(address, std::move(device)).second)
        throw std::invalid_argument("I2C address " + std::to_string(address) +
                                    " cannot be given to a device");
}

I2cBus::Outcome I2cBus::read(std::int32_t address, bool start, bool stop, std::int32_t count,
                             const Wait& wait) {
    if (!isAddress(address) || !isCount(count))
        return refusal(return_code::badArgument);
    constexpr auto direction = I2cDevice::Direction::read;
    if (!(start ? begin(address, direction, wait) : underWay(direction)))
        return refusal(return_code::notAcknowledged);
    Outcome outcome;
    outcome.data.reserve(static_cast<std::size_t>(count));
    for (std::int32_t i = 0; i < count; ++i)
        outcome.data.push_back(selected_->read());
    if (stop)
        end();
    return outcome;
}

I2cBus::Outcome I2cBus::write(std::int32_t address, bool start, bool stop, std::span<const std::uint8_t> data,
                              const Wait& wait) {
    if (!isAddress(address) || data.size() > static_cast<std::size_t>(largestCount))
        return refusal(return_code::badArgument);
    constexpr auto direction = I2cDevice::Direction::write;
    if (!(start ? begin(address, direction, wait) : underWay(direction)))
        return refusal(return_code::notAcknowledged);
    Outcome outcome;
    for (const auto byte : data) {
        if (selected_->write(byte)) {
            ++outcome.acknowledged;
            continue;
        }
        outcome.code = return_code::notAcknowledged;
        if (options_.stopAtDataNack) {
            end();
            return outcome;
        }
    }
    if (stop)
        end();
    return outcome;
}

I2cBus::Outcome I2cBus::transfer(std::int32_t address, std::span<const std::uint8_t> data, std::int32_t count,
                                 const Wait& wait) {
    if (!isAddress(address) || !isCount(count))
        return refusal(return_code::badArgument);
    Outcome written;
    if (!data.empty()) {
        written = write(address, true, count == 0, data, wait);
        if (count == 0)
            return written;
        if (written.code != return_code::done) {
            end();
            return written;
        }
    } else if (count == 0) {
        return written;
    }
    auto outcome = read(address, true, true, count, wait);
    outcome.acknowledged = written.acknowledged;
    return outcome;
}

bool I2cBus::setOptions(const Options& options) {
    if (options.addressRetryLimit < 0 || options.addressRetryLimit > largestRetryLimit ||
        options.busyTimeout < 0 || options.stretchTimeout < 0)
        return false;
    options_ = options;
    return true;
}

bool I2cBus::setFrequency(std::int32_t frequency) {
    if (frequency < slowest || frequency > fastest)
        return false;
    const auto wanted = static_cast<std::uint32_t>(frequency);
    divider_ = (baseFrequency + wanted - 1) / wanted;
    return true;
}

bool I2cBus::begin(std::int32_t address, I2cDevice::Direction direction, const Wait& wait) {
    const auto clock = frequency();
    const auto tryDuration = (clocksOfAddress * 1'000'000 + clock - 1) / clock;
    const auto found = devices_.find(static_cast<std::uint8_t>(address));
    for (std::int32_t attempt = 0; attempt <= options_.addressRetryLimit; ++attempt) {
        wait(tryDuration);
        if (found != devices_.end() && found->second->address(direction)) {
            selected_ = found->second;
            direction_ = direction;
            return true;
        }
    }
    end();
    return false;
}

bool I2cBus::underWay(I2cDevice::Direction direction) const { return selected_ && direction_ == direction; }

void I2cBus::end() {
    if (const auto device = std::exchange(selected_, nullptr))
        device->stop();
}

} // namespace TAVO::simulator
