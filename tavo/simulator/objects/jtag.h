#pragma once

#include <memory>
#include <string>
#include <vector>

#include <tavo/client/transcode/call.h>
#include <tavo/simulator/export.h>
#include <tavo/simulator/models/header_status.h>
#include <tavo/simulator/models/jtag_port.h>
#include <tavo/simulator/simulated_object.h>

namespace TAVO::simulator {

/// The chain of the standard board, from TDO on: "cpu" (IR 8), "chipset" (IR 5), "cpld" (IR 10).
TAVO_SIMULATOR_API std::vector<TapDescription> standardTaps();

/// A "jtag" of version "1.0" or "1.1": a port with a chain. Version 1.0 has one set of retry, repeat and
/// comparison options for both registers.
class TAVO_SIMULATOR_API Jtag : public SimulatedObject {
public:
    Jtag(const std::string& version, std::shared_ptr<Board> board,
         std::vector<TapDescription> taps = standardTaps());
    /// Resets options and pins. The chain belongs to the board and stays as it is.
    void reset() override;

    JtagPort& port() { return port_; }
    HeaderStatus& headerStatus() { return headerStatus_; }

private:
    void serveShifts();
    void servePins();
    void serveOptions_v1_0();
    void serveOptions_v1_1();

    template <class Request, class Change>
    void onOptionsSet(const TAVOXTranscode::Call<Request>& call, Change change);

    JtagPort port_;
    HeaderStatus headerStatus_;
};

/// A "csJtag": a chip-select wrapper. Its client needs a Jtag of version 1.1 named "jtag" below it.
class TAVO_SIMULATOR_API CsJtag : public SimulatedObject {
public:
    CsJtag();
};

} // namespace TAVO::simulator
