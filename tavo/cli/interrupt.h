#pragma once

#include <array>
#include <chrono>
#include <exception>

#include <signal.h>

namespace TAVO::cli {

/// The user, or the system, wants the tool to end. Leaves every scope, so that the lock is released, and then
/// ends the process as the signal would have.
class Interrupted : public std::exception {
public:
    explicit Interrupted(int signalNumber)
        : signal(signalNumber) {}
    const char* what() const noexcept override { return "interrupted"; }

    int signal;
};

/// While one exists, SIGINT, SIGTERM and SIGHUP, unless they are ignored, become Interrupted at the next
/// wait. A second one ends the process at once: the first may have come while the device does not answer. For
/// commands that wait in loops; there is one at a time.
class InterruptWatch {
public:
    /// @param lastWill what has to be done before the process ends at once; it runs in a signal handler.
    explicit InterruptWatch(void (*lastWill)() = nullptr);
    InterruptWatch(const InterruptWatch&) = delete;
    InterruptWatch& operator=(const InterruptWatch&) = delete;
    ~InterruptWatch();

    /// Sleeps for that long.
    /// @throws Interrupted at once when a signal comes or came.
    void pause(std::chrono::milliseconds time) { waitForInput(-1, time); }
    /// Waits no longer than that for something to read, or the end, from `descriptor`.
    /// @return whether there is. @throws as pause().
    bool waitForInput(int descriptor, std::chrono::milliseconds time);

private:
    static constexpr std::array signals_ = {SIGINT, SIGTERM, SIGHUP};
    std::array<struct sigaction, signals_.size()> before_{};
};

/// Ends the process by the signal's own effect.
void dieOf(const Interrupted& interrupted);

} // namespace TAVO::cli
