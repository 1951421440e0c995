#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

#include <tavo/jtag/step.h>

namespace TAVO::jtag {

/// Where the TDO levels of consecutive clocks are found.
struct TdoRun {
    /// The step whose result holds them; none if no register shifted: then TDO is high.
    std::optional<std::size_t> step;
    /// The first bit of that result.
    std::size_t first = 0;
    std::size_t count = 0;
    bool operator==(const TdoRun&) const = default;
};

/// What a client's clocks ask of a port.
struct TrackedClocks {
    Steps steps;
    /// The levels that the client wanted, in the order of their clocks.
    std::vector<TdoRun> wanted;
};

/// The levels that the client wanted. @param results those of the steps.
BitString wantedLevels(const std::vector<TdoRun>& wanted, const std::vector<BitString>& results);

/// Makes steps of the clocks of a client that drives TMS and TDI itself. The controllers make the client's
/// captures, shifts and updates, in its order and each once; they pass Run-Test/Idle between two scans, and
/// Pause where an answer is due in the middle of one.
class TapTracker {
public:
    using TimeOf = std::function<std::chrono::microseconds(std::uint64_t clocks)>;

    /// @param state where the controllers are. @param timeOf how long clocks take.
    TapTracker(TapState state, TimeOf timeOf);

    /// Where the client's clocks have led.
    TapState state() const { return client_; }
    /// One clock. @param isRead whether the level of TDO before its rising edge is wanted.
    void clock(bool tms, bool tdi, bool isRead);
    /// The level of TDO is wanted, and no clock will follow before it is known. Within a shift this leads to
    /// clocks by pins until Run-Test/Idle.
    void readTdo();
    /// Drives TRST, from the first call on.
    void setTrst(bool level);
    /// The client has gone: the next one finds no pin driven low.
    void letGo();

    /// How much waits to be handed out, in bits.
    std::size_t heldBits() const { return heldBits_ + steps_.size() * bitsOfStep; }
    /// Whether clocks are made by pins.
    bool usesPins() const { return usesPins_; }
    /// Whether the client waits for a level that the port has to tell.
    bool awaitsPort() const { return awaitsPort_; }
    /// Hands out what came since the last call; the results are wanted before anything else is run.
    TrackedClocks take();

private:
    static constexpr std::size_t bitsOfStep = 256;

    void clockPins(bool tms, bool tdi, bool isRead);
    void enterPins();
    void releasePins();
    void want(std::optional<std::size_t> step, std::size_t bit);
    /// Ends a stay in a resting state.
    void endStay();
    /// Brings the port into Pause in the middle of the scan.
    void park();
    void closeScan();
    void shiftTo(TapState end);

    TimeOf timeOf_;
    TapState client_;
    /// Whether the scan in whose column the client is has begun, with Capture, for the client; and for the
    /// port, which then is in Pause.
    bool isCaptured_;
    bool isParked_;
    bool usesPins_;
    std::optional<bool> trst_;
    /// Of the scan; the port has not got them.
    BitString bits_;
    /// In the resting state where the client is, beside the one that leaves it.
    std::uint64_t clocksOfStay_ = 0;
    Steps steps_;
    std::vector<TdoRun> wanted_;
    std::size_t heldBits_ = 0;
    bool awaitsPort_ = false;
};

} // namespace TAVO::jtag
