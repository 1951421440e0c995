#pragma once

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

/// While one exists, SIGINT and SIGTERM become Interrupted at the next pause(). For commands that wait in
/// loops; there is one at a time.
class InterruptWatch {
public:
    InterruptWatch();
    InterruptWatch(const InterruptWatch&) = delete;
    InterruptWatch& operator=(const InterruptWatch&) = delete;
    ~InterruptWatch();

    /// Sleeps for that long.
    /// @throws Interrupted at once when a signal comes or came.
    void pause(std::chrono::milliseconds time);

private:
    struct sigaction beforeInt_ {};
    struct sigaction beforeTerm_ {};
};

/// Ends the process by the signal's own effect.
void dieOf(const Interrupted& interrupted);

} // namespace TAVO::cli
