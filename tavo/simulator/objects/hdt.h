#pragma once

#include <memory>
#include <string>

#include <tavo/client/transcode/call.h>
#include <tavo/simulator/export.h>
#include <tavo/simulator/models/debug_signals.h>
#include <tavo/simulator/models/header_status.h>
#include <tavo/simulator/simulated_object.h>

namespace TAVO::simulator {

/// An "hdt" of version "1.0" or "1.1": the debug signals of the board's processor.
class TAVO_SIMULATOR_API Hdt : public SimulatedObject {
public:
    Hdt(const std::string& version, std::shared_ptr<Board> board);
    void reset() override;

    DebugSignals& signals() { return signals_; }
    HeaderStatus& headerStatus() { return headerStatus_; }

private:
    void serveSignals();
    void serveOptions();
    void serveTriggers();
    void serveMaskAndWait();

    template <class Request, class Change>
    void onOptionSet(const TAVOXTranscode::Call<Request>& call, Change change);

    std::shared_ptr<Board> board_;
    DebugSignals signals_;
    HeaderStatus headerStatus_;
};

/// A "cpuDebug" of version "1.0" or "1.1". Its client needs a Jtag named "jtag" and an Hdt named "hdt" of the
/// same version below it.
class TAVO_SIMULATOR_API CpuDebug : public SimulatedObject {
public:
    CpuDebug(const std::string& version, std::shared_ptr<Board> board);
    void reset() override;

private:
    HeaderStatus headerStatus_;
};

} // namespace TAVO::simulator
