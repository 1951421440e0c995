#pragma once

#include <memory>

#include <tavo/simulator/export.h>
#include <tavo/simulator/models/header_status.h>
#include <tavo/simulator/models/i2c_bus.h>
#include <tavo/simulator/simulated_object.h>

namespace TAVO::simulator {

/// An "i2c": a bus, empty at first.
class TAVO_SIMULATOR_API I2c : public SimulatedObject {
public:
    explicit I2c(std::shared_ptr<Board> board);
    /// Options and frequency are as at first; devices and their content stay.
    void reset() override;

    I2cBus& bus() { return bus_; }
    HeaderStatus& headerStatus() { return headerStatus_; }

    /// Attaches what the bus of the standard topology has: a memory module's description at 0x50 and a
    /// temperature sensor at 0x48 on the board, and an EEPROM of 64 KiB at 0x54 on the appliance's side.
    void attachStandardDevices();

private:
    void serveTransfers();
    void serveOptions();

    std::shared_ptr<Board> board_;
    I2cBus bus_;
    HeaderStatus headerStatus_;
};

} // namespace TAVO::simulator
