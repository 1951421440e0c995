#pragma once

#include <memory>

#include <tavo/simulator/export.h>
#include <tavo/simulator/models/serial_port.h>
#include <tavo/simulator/simulated_object.h>

namespace TAVO::simulator {

/// A "com": the serial port, wired to the board's console.
class TAVO_SIMULATOR_API Com : public SimulatedObject {
public:
    explicit Com(std::shared_ptr<Board> board);
    /// Closes the port.
    void reset() override;

    SerialPort& port() { return port_; }

private:
    SerialPort port_;
};

} // namespace TAVO::simulator
