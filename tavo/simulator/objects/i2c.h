#pragma once

#include <memory>

#include <tavo/simulator/export.h>
#include <tavo/simulator/models/header_status.h>
#include <tavo/simulator/models/i2c_bus.h>
#include <tavo/simulator/simulated_object.h>

namespace TAVO::simulator {

/// An "i2c" bus, initially without devices.
class TAVO_SIMULATOR_API I2c : public SimulatedObject {
public:
    explicit I2c(std::shared_ptr<Board> board);
    /// Resets options and frequency. Devices and their content stay.
    void reset() override;

    I2cBus& bus() { return bus_; }
    HeaderStatus& headerStatus() { return headerStatus_; }

    /// Attaches the devices of the standard topology: the SPD EEPROM of a memory module at 0x50 and a
    /// temperature sensor at 0x48, both on the board, and a 64 KiB EEPROM at 0x54 on the appliance.
    void attachStandardDevices();

private:
    void serveTransfers();
    void serveOptions();

    std::shared_ptr<Board> board_;
    I2cBus bus_;
    HeaderStatus headerStatus_;
};

} // namespace TAVO::simulator
