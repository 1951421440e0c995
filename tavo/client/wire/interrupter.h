#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>

#include <tavo/client/export.h>

namespace TAVO {

/// Ends, from outside, what waits for a device.
///
/// interrupt() may be called by any thread and by a signal handler, at any time, and never waits; all else
/// belongs to the device's thread. An exchange that runs at that moment ends within 100 ms with NetworkError
/// "Call to device interrupted.", unless its whole reply has arrived; only the resolution of a host name,
/// which is the system's, takes its own time. The connection is left closed, and the next exchange makes a
/// new one. When no exchange runs, the connection is closed and the next exchange makes a new one. What the
/// device was told before may have its effect there all the same. However many threads interrupt, without a
/// pause even, the device's thread waits for at most one of them before it closes a connection.
///
/// Device::interrupt() does this for a device that is open. An interrupter of one's own serves where there is
/// no Device yet, or no more: hand it to DeviceFactory::buildDevice or queryDevice, keep it as long as
/// interrupt() may be called, and the opening, every exchange and the unlocking at the end can be
/// interrupted. Several devices of one thread may share it, one after the other or in turns: interrupt() ends
/// the exchange that runs, whichever device's it is, and each of them makes its connection anew.
class TAVO_API Interrupter {
public:
    Interrupter() = default;
    Interrupter(const Interrupter&) = delete;
    Interrupter& operator=(const Interrupter&) = delete;

    void interrupt() noexcept;

    /// Makes one operation of several exchanges: as long as it lives, an interrupt also ends the exchange
    /// that comes next, and all after it. An interrupt from before it was made ends none of them; the
    /// connection that it closed is made anew. The thread of the device makes and destroys it; the
    /// interrupter must outlive it. Operations may be nested.
    class TAVO_API Operation {
    public:
        explicit Operation(Interrupter& interrupter) noexcept;
        Operation(const Operation&) = delete;
        Operation& operator=(const Operation&) = delete;
        ~Operation();

    private:
        Interrupter& interrupter_;
    };

private:
    friend class SocketTransport;

    using Count = std::size_t;

    /// The interrupts that an exchange beginning now is not ended by: those up to the beginning of the
    /// Operation, or without one up to now. They act on no socket that is published from now on.
    Count beginExchange() noexcept;
    bool isInterruptedSince(Count begin) const noexcept { return interrupts_ != begin; }
    /// Withdraws the socket that was published before. Whether it is another one.
    bool publish(std::intptr_t socket) noexcept;
    /// Afterwards no interrupt acts on this socket. Does nothing when it is not the one that is published.
    void withdraw(std::intptr_t socket) noexcept;

    static constexpr std::intptr_t noSocket = -1;
    /// One thread is about to cut the connection of the published socket; all others only count.
    static constexpr std::intptr_t claimed = -2;
    /// The socket is withdrawn, and who has claimed it is waited for.
    static constexpr std::intptr_t awaited = -3;

    std::atomic<std::intptr_t> socket_ = noSocket;
    std::atomic<Count> interrupts_ = 0;
    /// So many of them have had their effect.
    std::atomic<Count> settled_ = 0;
    // The device's thread alone uses what follows.
    std::intptr_t published_ = noSocket;
    Count operationBegin_ = 0;
    std::uint32_t operations_ = 0;

    static_assert(std::atomic<std::intptr_t>::is_always_lock_free && std::atomic<Count>::is_always_lock_free,
                  "a signal handler may only use atomics without locks");
};

} // namespace TAVO
