#pragma once

#include <chrono>
#include <cstdint>

#include <tavo/simulator/export.h>

namespace TAVO::simulator {

/// The appliance's time. It runs with real time until it is frozen, can be moved on by hand, and tells two
/// things: the time of day, which can be set, and the time since the clock was made, which cannot.
class TAVO_SIMULATOR_API Clock {
public:
    /// The time of day is the computer's.
    Clock();

    /// Microseconds since the epoch.
    std::int64_t time() const;
    void setTime(std::int64_t microseconds);
    /// Microseconds since the clock was made. Never goes back.
    std::int64_t elapsed() const;
    /// A time in which nothing happens any more: some 36,000 years.
    static constexpr std::chrono::microseconds longest{std::int64_t{1} << 60};
    /// Both times move on; the elapsed time no further than to `longest`.
    void advance(std::chrono::microseconds duration);
    /// Both times stand at this elapsed time until real time has caught up with it: for what was told to
    /// happen in time that has still to pass. Does nothing when that time is gone.
    void holdAt(std::int64_t elapsed);
    /// From now on time moves by advance() alone, and by what clients let the appliance sleep.
    void freeze();
    bool isFrozen() const { return frozen_; }

private:
    std::chrono::steady_clock::time_point start_;
    bool frozen_ = false;
    std::int64_t advanced_ = 0;
    std::int64_t heldAt_ = 0;
    std::int64_t timeAtStart_;
};

} // namespace TAVO::simulator
