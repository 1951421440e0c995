#pragma once

#include <tavo/simulator/export.h>
#include <tavo/simulator/models/tap_state.h>

namespace TAVO::simulator {

/// Told what arrives at the pins of a chain, whether by shifts, moves or single pins: see
/// JtagPort::setObserver(). Nothing arrives while the board has no power.
class TAVO_SIMULATOR_API TapObserver {
public:
    TapObserver() = default;
    TapObserver(const TapObserver&) = delete;
    TapObserver& operator=(const TapObserver&) = delete;
    virtual ~TapObserver() = default;

    /// A clock while TRST is high: the levels at the rising edge of TCK, and the state before it.
    virtual void clock(TapState state, bool tms, bool tdi, bool tdo) = 0;
    /// TRST has changed; low enters Test-Logic-Reset. `state` is the one before.
    virtual void trst(TapState state, bool level) = 0;
    /// The call that did the above is over.
    virtual void callEnded() {}
};

} // namespace TAVO::simulator
