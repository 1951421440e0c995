#pragma once

#include <ctime>

#include <sys/types.h>

namespace bench {

/// The clock of a measurement.
///
/// If client and server share one processor, it never idles while one waits for the other. Their processor
/// time together is then the wall time on an idle machine, without the share of other programs.
class Clock {
public:
    static Clock wall() { return Clock(CLOCK_MONOTONIC); }
    /// The processor time of this process and another one.
    static Clock processor(pid_t other) {
        Clock clock = ownProcessor();
        clock.hasOther_ = ::clock_getcpuclockid(other, &clock.other_) == 0;
        return clock;
    }
    /// The processor time of two other processes.
    static Clock processors(pid_t one, pid_t other) {
        auto clock = processor(other);
        ::clock_getcpuclockid(one, &clock.own_);
        return clock;
    }
    /// The processor time of this process.
    static Clock ownProcessor() { return Clock(CLOCK_PROCESS_CPUTIME_ID); }

    /// Duration of the action in seconds.
    template <class Action>
    double timed(Action&& action) const {
        // Reading the other's time takes some of our own, so read it outside of ours.
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
