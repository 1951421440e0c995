#pragma once

#include <atomic>
#include <cstdint>

#include <tavo/client/export.h>

namespace TAVO {

/// Ends, from outside, what waits for a device.
///
/// interrupt() may be called by any thread and by a signal handler, at any time; all else belongs to the
/// device's thread. An exchange that runs at that moment ends within 100 ms with NetworkError "Call to device
/// interrupted.", unless its whole reply has arrived; only the resolution of a host name, which is the
/// system's, takes its own time. The connection is left closed, and the next exchange makes a new one. When
/// no exchange runs, the connection is closed and the next exchange makes a new one. What the device was told
/// before may have its effect there all the same.
///
/// Device::interrupt() does this for a device that is open. An interrupter of one's own serves where there is
/// no Device yet, or no more: hand it to DeviceFactory::buildDevice or queryDevice, keep it as long as
/// interrupt() may be called, and the opening, every exchange and the unlocking at the end can be
/// interrupted. It serves one connection at a time.
class TAVO_API Interrupter {
public:
    Interrupter() = default;
    Interrupter(const Interrupter&) = delete;
    Interrupter& operator=(const Interrupter&) = delete;

    void interrupt() noexcept;

    /// Makes one operation of several exchanges: as long as it lives, an interrupt also ends the exchange
    /// that comes next, and all after it. The thread of the device makes and destroys it; the interrupter
    /// must outlive it. Operations may be nested.
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

    /// False when there was an interrupt since the last exchange began: the connection is not to be used.
    bool beginExchange() noexcept;
    bool isInterrupted() const noexcept { return interrupts_ != seen_; }
    void publish(std::intptr_t socket) noexcept { socket_ = socket; }
    /// Afterwards no interrupt touches the socket that was published.
    void withdraw() noexcept;

    static constexpr std::intptr_t noSocket = -1;

    std::atomic<std::intptr_t> socket_ = noSocket;
    std::atomic<std::uint32_t> interrupts_ = 0;
    std::atomic<std::uint32_t> acting_ = 0;
    std::uint32_t seen_ = 0;
    std::uint32_t operations_ = 0;

    static_assert(std::atomic<std::intptr_t>::is_always_lock_free &&
                      std::atomic<std::uint32_t>::is_always_lock_free,
                  "a signal handler may only use atomics without locks");
};

} // namespace TAVO
