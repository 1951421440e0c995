#pragma once

#include <chrono>
#include <cstdint>

#include <tavo/client/export.h>

namespace TAVO::simulator {

/// The appliance's time. It runs with real time, can be moved on by hand, and tells two things: the time of
/// day, which can be set, and the time since the clock was made, which cannot.
class TAVO_API Clock {
public:
    /// The time of day is the computer's.
    Clock();

    /// Microseconds since the epoch.
    std::int64_t time() const;
    void setTime(std::int64_t microseconds);
    /// Microseconds since the clock was made. Never goes back.
    std::int64_t elapsed() const;
    /// Both times move on.
    void advance(std::chrono::microseconds duration);

private:
    std::chrono::steady_clock::time_point start_;
    std::int64_t advanced_ = 0;
    std::int64_t timeAtStart_;
};

} // namespace TAVO::simulator
