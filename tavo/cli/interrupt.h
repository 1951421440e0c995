#pragma once

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <csignal>
#include <exception>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>

#include <tavo/client/wire/interrupter.h>

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

/// Ends what waits, for the device or for time, on a signal.
///
/// While one exists, SIGINT, SIGTERM, SIGHUP and SIGQUIT, unless they are ignored, become Interrupted at the
/// next wait or in the one that runs. A second one ends the process at once. There is one at a time.
class InterruptWatch {
public:
    using Milliseconds = std::chrono::milliseconds;

    InterruptWatch();
    InterruptWatch(const InterruptWatch&) = delete;
    InterruptWatch& operator=(const InterruptWatch&) = delete;
    ~InterruptWatch();

    static bool isThere() { return there_; }

    /// To be handed to the device's factory.
    const std::shared_ptr<Interrupter>& interrupter() const { return interrupter_; }

    /// What else ends a wait, beside the interrupter. It is called by another thread, for as long as this
    /// exists, again and again until the wait has ended.
    void alsoInterrupt(std::function<void()> action);

    /// Runs an action that waits for the device.
    /// @throws Interrupted when a signal came before, or ended it; what the action throws.
    template <class Action>
    auto await(Action action) {
        throwIfInterrupted();
        try {
            const Wait wait(*this);
            return action();
        } catch (const std::exception&) {
            if (endedWait_)
                throwIfInterrupted();
            throw;
        }
    }

    /// Sleeps for that long.
    /// @throws Interrupted at once when a signal comes or came.
    static void pause(Milliseconds time) { waitForInput(-1, time); }
    /// Waits no longer than that for something to read, or the end, from `descriptor`.
    /// @return whether there is. @throws as pause().
    static bool waitForInput(int descriptor, Milliseconds time);
    /// @throws Interrupted when a signal came.
    static void throwIfInterrupted();
    /// The signal that came, for those who act upon it themselves; 0 for none. It counts as handled.
    static int takeSignal();
    /// As if no signal had come, for a tool that goes on after one.
    static void forget();

    /// What has to be done before a second signal ends the process; it runs in a signal handler.
    class LastWill {
    public:
        explicit LastWill(void (*will)());
        LastWill(const LastWill&) = delete;
        LastWill& operator=(const LastWill&) = delete;
        ~LastWill();
    };

private:
    using Clock = std::chrono::steady_clock;

    /// How long a call that runs when a signal comes may go on: its reply may be all that is left of what the
    /// device gave away.
    static constexpr Milliseconds grace{250};

    class Wait {
    public:
        explicit Wait(InterruptWatch& watch)
            : watch_(watch) {
            watch_.setWaiting(true);
        }
        Wait(const Wait&) = delete;
        Wait& operator=(const Wait&) = delete;
        ~Wait() { watch_.setWaiting(false); }

    private:
        InterruptWatch& watch_;
    };

    void setWaiting(bool waiting);
    void watch();

    static std::atomic<bool> there_;
    std::shared_ptr<Interrupter> interrupter_ = std::make_shared<Interrupter>();
    static constexpr std::array signals_ = {SIGINT, SIGTERM, SIGHUP, SIGQUIT};
    std::array<struct sigaction, signals_.size()> before_{};

    std::mutex mutex_;
    std::condition_variable changed_;
    std::function<void()> alsoInterrupt_;
    bool waiting_ = false;
    bool endedWait_ = false; ///< of the wait that runs, or of the last one
    bool done_ = false;
    std::thread thread_;
};

/// Ends the process by the signal's own effect.
void dieOf(int signal);

} // namespace TAVO::cli
