#pragma once

#include <chrono>
#include <cstdint>

#include <tavo/simulator/export.h>

namespace TAVO::simulator {

/// The appliance's clock. It follows real time until frozen and can be advanced by hand. It has two times:
/// the time of day, which can be set, and the elapsed time, which cannot.
class TAVO_SIMULATOR_API Clock {
public:
    /// Starts with the computer's time of day.
    Clock();

    /// Microseconds since the epoch.
    std::int64_t time() const;
    void setTime(std::int64_t microseconds);
    /// Microseconds since the clock was made. Never decreases.
    std::int64_t elapsed() const;
    /// The longest time anything has to wait: some 36,000 years.
    static constexpr std::chrono::microseconds longest{std::int64_t{1} << 60};
    /// Advances both times; the elapsed time at most to `longest`.
    void advance(std::chrono::microseconds duration);
    /// Holds both times at this elapsed time until real time catches up: for work done ahead of the delay
    /// that the client still waits for. Does nothing if that time has passed.
    void holdAt(std::int64_t elapsed);
    /// From now on only advance() and the sleeps that clients request move the time.
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
