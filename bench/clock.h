#pragma once

#include <ctime>

#include <sys/types.h>

namespace bench {

/// What time is taken by.
///
/// Where client and server share one processor nothing ever waits for the other side while the processor
/// rests, so the time that both take of the processor is what passes on an otherwise idle machine. It leaves
/// out what other programs of a shared machine take.
class Clock {
public:
    static Clock wall() { return Clock(CLOCK_MONOTONIC); }
    /// The processor time of this process and of another one.
    static Clock processor(pid_t other) {
        Clock clock = ownProcessor();
        clock.hasOther_ = ::clock_getcpuclockid(other, &clock.other_) == 0;
        return clock;
    }
    /// The processor time of this process.
    static Clock ownProcessor() { return Clock(CLOCK_PROCESS_CPUTIME_ID); }

    /// Seconds that the action takes.
    template <class Action>
    double timed(Action&& action) const {
        // Asking for the other's time takes some of our own: its reading lies outside.
        const auto otherStart = hasOther_ ? read(other_) : 0;
        const auto start = read(own_);
        action();
        const auto end = read(own_);
        return end - start + (hasOther_ ? read(other_) - otherStart : 0);
    }

private:
    explicit Clock(clockid_t own)
        : own_(own) {}

    static double read(clockid_t clock) {
        timespec time{};
        ::clock_gettime(clock, &time);
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
    }

    clockid_t own_;
    clockid_t other_ = 0;
    bool hasOther_ = false;
};

} // namespace bench
