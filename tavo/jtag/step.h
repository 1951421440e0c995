#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <variant>
#include <vector>

#include <tavo/client/hwdebug/tap_state.h>
#include <tavo/jtag/bit_string.h>

namespace TAVO::jtag {

using HWDebug::TapState;

/// Whether a shift goes through the instruction registers or the data registers of a chain.
enum class Register { instruction, data };

/// Makes the device compare what a shift captures, and shift again while it differs.
struct Poll {
    BitString expected;
    BitString mask;
    std::int32_t retries = 0;
    bool operator==(const Poll&) const = default;
};

/// Shifts at least one bit. If the controllers pause in the same register, the shift goes on from there
/// (Exit2, Shift) without another capture; from everywhere else it begins with Capture.
struct Shift {
    Register target = Register::data;
    BitString bits;
    /// A resting state.
    TapState end = TapState::runTestIdle;
    /// Whether the bits that come out on TDO are wanted.
    bool isRead = false;
    std::optional<Poll> poll = {};
    bool operator==(const Shift&) const = default;
};

/// Moves along the shortest path to a resting state.
struct Move {
    TapState to = TapState::runTestIdle;
    bool operator==(const Move&) const = default;
};

/// Stays in the resting state with TCK running, or standing still. A running TCK finds TMS low: it leaves
/// Test-Logic-Reset.
struct Idle {
    std::chrono::microseconds duration{0};
    bool isClocked = true;
    bool operator==(const Idle&) const = default;
};

/// The pin TRST: driven to a level, or left to its pull-up.
struct Trst {
    bool isDriven = false;
    bool level = true;
    bool operator==(const Trst&) const = default;
};

/// One clock made by pins: TMS and TDI as given at the rising edge of TCK.
struct PinClock {
    bool tms = false;
    bool tdi = false;
    /// Whether TDO before the rising edge is wanted.
    bool isRead = false;
    bool operator==(const PinClock&) const = default;
};

/// Makes TCK high, lets go of it, TMS and TDI, so that scans can follow. Where nothing was made by pins it
/// does nothing.
struct ReleasePins {
    bool operator==(const ReleasePins&) const = default;
};

/// Reads TDO as the next PinClock would, which may follow: TCK is low from here on.
struct ReadTdo {
    bool operator==(const ReadTdo&) const = default;
};

/// One thing to do at a JTAG port.
using Step = std::variant<Shift, Move, Idle, Trst, PinClock, ReleasePins, ReadTdo>;
using Steps = std::vector<Step>;

} // namespace TAVO::jtag
