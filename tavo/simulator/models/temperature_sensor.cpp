#include <tavo/simulator/models/temperature_sensor.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace TAVO::simulator {

namespace {

enum Register : std::size_t { measured, configuration, hysteresis, limit };

constexpr std::uint16_t stopsMeasuring = 0x0001;

std::uint16_t registerValue(double celsius) {
    const auto steps = std::lround(std::clamp(celsius, -55.0, 125.0) * 2);
    return static_cast<std::uint16_t>(static_cast<unsigned long>(steps) << 7);
}

} // namespace

TemperatureSensor::TemperatureSensor(std::shared_ptr<Board> board)
    : board_(std::move(board)) {}

bool TemperatureSensor::address(Direction direction) {
    if (!board_->powered())
        return false;
    if (std::exchange(powerOns_, board_->powerOnCount()) != powerOns_) {
        pointer_ = measured;
        registers_ = {0, 0, registerValue(75), registerValue(80)};
    }
    measure();
    position_ = 0;
    pointerIsDue_ = direction == Direction::write;
    return true;
}

bool TemperatureSensor::write(std::uint8_t byte) {
    if (std::exchange(pointerIsDue_, false)) {
        pointer_ = byte & 3;
        return true;
    }
    auto& content = registers_[pointer_];
    if (pointer_ == configuration) {
        measure();
        content = byte;
    } else if (pointer_ != measured) {
        const bool isHighByte = position_++ % 2 == 0;
        content = static_cast<std::uint16_t>(isHighByte ? (byte << 8) | (content & 0x80)
                                                        : (content & 0xFF00) | (byte & 0x80));
    }
    return true;
}

std::uint8_t TemperatureSensor::read() {
    if (pointer_ == configuration)
        return static_cast<std::uint8_t>(registers_[pointer_]);
    const bool isHighByte = position_++ % 2 == 0;
    return static_cast<std::uint8_t>(isHighByte ? registers_[pointer_] >> 8 : registers_[pointer_] & 0xFF);
}

void TemperatureSensor::stop() {}

void TemperatureSensor::measure() {
    if ((registers_[configuration] & stopsMeasuring) == 0)
        registers_[measured] = registerValue(board_->temperature());
}

} // namespace TAVO::simulator
