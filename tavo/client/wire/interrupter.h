#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>

#include <tavo/client/export.h>

namespace TAVO {

/// Cuts short a wait for a device, from another thread or a signal handler.
///
/// Device::interrupt() does this for an open device. Make an interrupter of your own to interrupt an opening
/// or a release as well, when there is no Device to ask: hand it to DeviceFactory::buildDevice or
/// queryDevice, and keep it as long as interrupt() may be called.
///
/// @code
/// const auto interrupter = std::make_shared<TAVO::Interrupter>();
/// auto device = TAVO::DeviceFactory::buildDevice(host, port, user, password, false, interrupter);
/// // in another thread: interrupter->interrupt();
/// @endcode
///
/// Several devices of one thread may share an interrupter. interrupt() then ends the exchange that is
/// running, whichever device it belongs to, and each of the devices connects anew.
///
/// Only interrupt() may be called from other threads; everything else belongs to the device's thread.
class TAVO_API Interrupter {
public:
    Interrupter() = default;
    Interrupter(const Interrupter&) = delete;
    Interrupter& operator=(const Interrupter&) = delete;

    /// Closes the connection; the next exchange makes a new one. A running exchange ends within 100 ms with
    /// NetworkError "Call to device interrupted.", unless its whole reply has arrived already; the device may
    /// carry the call out all the same. Resolving a host name cannot be cut short.
    ///
    /// Safe in any thread and in signal handlers, at any time; never blocks. Before the device's thread
    /// closes a connection it may wait for one caller that is about to cut it, but never for more than one.
    void interrupt() noexcept;

    /// For programs whose signal handlers only leave a note: lets `shouldEnd` be asked in the device's
    /// thread while an exchange waits, soon after a signal handler has run in that thread, and otherwise
    /// every 50 ms. When it says true, the exchange ends as by interrupt(). It must not throw, and not use
    /// the device. An empty function, as at first, asks nobody. Each wait for the device costs one poll more
    /// meanwhile. Works with a SocketTransport; set it while no exchange runs.
    void endWhen(std::function<bool()> shouldEnd);

    /// Makes one operation of several exchanges: an interrupt during its life ends the exchange that is
    /// running and every later one as well. An interrupt from before costs the connection, but ends none of
    /// them. Operations may be nested.
    ///
    /// @code
    /// const TAVO::Interrupter::Operation whole(*interrupter);
    /// for (const auto& step : steps)
    ///     device->call(step);
    /// @endcode
    class TAVO_API Operation {
    public:
        /// Begins the operation, in the device's thread. `interrupter` must outlive it.
        explicit Operation(Interrupter& interrupter) noexcept;
        Operation(const Operation&) = delete;
        Operation& operator=(const Operation&) = delete;
        /// Ends the operation, in the same thread.
        ~Operation();

    private:
        Interrupter& interrupter_;
    };

private:
    friend class SocketTransport;

    using Count = std::size_t;

    /// How many interrupts do not concern an exchange that begins now: those before the outermost Operation,
    /// or without one all until now. They do not touch a socket that is published from now on.
    Count beginExchange() noexcept;
    bool isInterruptedSince(Count begin) const noexcept { return interrupts_ != begin; }
    /// Whether there is something to ask, see endWhen().
    bool asks() const noexcept { return static_cast<bool>(shouldEnd_); }
    /// Interrupts if the function of endWhen() says so.
    void ask() noexcept;
    /// Lets interrupts act on this socket, and no longer on the one published before. False when it was
    /// published already.
    bool publish(std::intptr_t socket) noexcept;
    /// After this no interrupt acts on the socket. Does nothing unless it is the published one.
    void withdraw(std::intptr_t socket) noexcept;

    static constexpr std::intptr_t noSocket = -1;
    /// One thread is about to cut the connection of the published socket; all others only count.
    static constexpr std::intptr_t claimed = -2;
    /// The socket is being withdrawn, which waits for the thread that claimed it.
    static constexpr std::intptr_t awaited = -3;

    std::atomic<std::intptr_t> socket_ = noSocket;
    std::atomic<Count> interrupts_ = 0;
    /// How many of them have taken effect.
    std::atomic<Count> settled_ = 0;
    // Only the device's thread uses the rest.
    std::intptr_t published_ = noSocket;
    Count operationBegin_ = 0;
    std::uint32_t operations_ = 0;
    std::function<bool()> shouldEnd_;

    static_assert(std::atomic<std::intptr_t>::is_always_lock_free && std::atomic<Count>::is_always_lock_free,
                  "a signal handler may only use atomics without locks");
};

} // namespace TAVO
