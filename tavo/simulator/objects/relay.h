#pragma once

#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

#include <tavo/simulator/export.h>
#include <tavo/simulator/models/board.h>
#include <tavo/simulator/simulated_object.h>

namespace TAVO::simulator {

/// A "relay", initially off. "toggle" with 0 changes the state permanently, with a positive number for that
/// many milliseconds of simulated time; it refuses a negative number (badArgument). "set" ends a pulse.
class TAVO_SIMULATOR_API Relay : public SimulatedObject {
public:
    Relay();
    void reset() override;

    bool state() const;
    void set(bool state);
    /// Makes the power of `board` follow this relay.
    void drivePowerOf(std::shared_ptr<Board> board);
    /// How often the relay has been told to switch.
    std::uint64_t switchings() const { return switchings_; }

private:
    bool stateAt(std::int64_t now) const { return steady_ != (now < pulseEnd_); }
    void toggle(std::int32_t milliseconds, std::int64_t now);

    bool steady_ = false;
    std::int64_t pulseEnd_ = 0;
    std::uint64_t switchings_ = 0;
    std::shared_ptr<Board> board_;
};

/// A "cmosRelay". "cmosClear" takes the length of its pulse in milliseconds. It refuses a negative length
/// (badArgument); more than a minute fails (device error 1006).
class TAVO_SIMULATOR_API CmosRelay : public SimulatedObject {
public:
    CmosRelay();

    /// Makes a pulse clear the settings of `board`.
    void clearCmosOf(std::shared_ptr<Board> board) { board_ = std::move(board); }

    /// The lengths of the pulses so far.
    const std::vector<std::int32_t>& pulses() const { return pulses_; }

private:
    std::vector<std::int32_t> pulses_;
    std::shared_ptr<Board> board_;
};

} // namespace TAVO::simulator
