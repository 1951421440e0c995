#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>

#include <tavo/simulator/export.h>
#include <tavo/simulator/models/board.h>
#include <tavo/simulator/models/i2c_bus.h>

namespace TAVO::simulator {

/// A temperature sensor on the board with four registers: 0 temperature, 1 configuration, 2 hysteresis, 3
/// limit. Temperatures are two bytes: 9 bits, left-aligned, in steps of half a degree.
///
/// The range is -55 to 125 degrees; values beyond it are clamped. Bit 0 of the configuration stops measuring.
/// Without power the sensor does not answer and loses its settings.
class TAVO_SIMULATOR_API TemperatureSensor : public I2cDevice {
public:
    explicit TemperatureSensor(std::shared_ptr<Board> board);

    bool address(Direction direction) override;
    bool write(std::uint8_t byte) override;
    std::uint8_t read() override;
    void stop() override;

private:
    void measure();

    std::shared_ptr<Board> board_;
    std::uint32_t powerOns_ = 0;
    std::size_t pointer_ = 0;
    std::size_t position_ = 0;
    bool pointerIsDue_ = false;
    std::array<std::uint16_t, 4> registers_{};
};

} // namespace TAVO::simulator
