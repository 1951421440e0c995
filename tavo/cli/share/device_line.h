#pragma once

#include <array>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include <asio/executor_work_guard.hpp>
#include <asio/io_context.hpp>
#include <asio/steady_timer.hpp>

#include <tavo/cli/share/turn.h>
#include <tavo/client/exchange/tavox_device.h>
#include <tavo/server/listener.h>

namespace TAVO::cli {

/// The share's one connection to the device, and the lock. Opens and releases it in a thread of its own, for
/// the library waits there; the exchanges of the clients run in the event loop, over the same connection.
class DeviceLine {
public:
    using Milliseconds = std::chrono::milliseconds;
    using Methods = Descriptions::Methods;

    /// What the line tells, in the event loop.
    class Owner {
    public:
        virtual ~Owner() = default;
        /// The device can be used. These are the methods of "device" and "system".
        virtual void lineOpened(const Methods& ofDevice, const Methods& ofSystem) = 0;
        /// The connection is lost, or could not be made. @param exception why.
        virtual void lineLost(const std::exception& exception) = 0;
        /// The lock is given back, and the connection closed.
        virtual void lineReleased() = 0;
        /// All of the reply to that turn has come; its client gets the end of it next.
        virtual void turnAnswered(const Turn& turn) = 0;
        /// The reply to that turn is complete.
        virtual void turnEnded(Turn& turn) = 0;
    };

    struct Access {
        /// Opens the device with its lock, of its tree the fixed objects alone.
        std::function<std::shared_ptr<TAVOXDevice>()> open;
        /// Ends an opening that waits; called from another thread.
        std::function<void()> interrupt;
        /// How long an exchange of the share itself may take, and the rest of one whose client has gone.
        Milliseconds patience{10000};
    };

    DeviceLine(asio::io_context& context, Access access, Owner& owner);
    DeviceLine(const DeviceLine&) = delete;
    DeviceLine& operator=(const DeviceLine&) = delete;
    ~DeviceLine();

    bool isExecuting() const { return state_ == State::executing; }
    bool isReady() const { return state_ == State::ready; }
    bool isReleased() const { return state_ == State::released; }
    /// Whether the connection is lost, and not yet there again.
    bool isAway() const { return state_ == State::lost || (state_ == State::working && device_ != nullptr); }

    /// Opens the device, or, where it was lost, takes its lock again. Tells the owner. Does nothing in other
    /// states.
    void open();
    /// Executes the calls for the device; one at a time, while isReady().
    void execute(std::shared_ptr<Turn> turn);
    /// The client of the turn that is executed has gone, or waits no longer for more than this reply: the
    /// device has `patience` to finish it.
    void hurry();
    /// Stops, or goes on, taking in the reply that arrives.
    void hold(bool held);
    /// Gives the lock back and closes the connection. Does nothing unless isReady() or lost.
    void release();
    /// Ends what the thread does, and waits for it.
    void stop();

    /// How long until open() should be tried again, after it has failed so often in a row.
    static Milliseconds pauseAfter(unsigned failures);

private:
    enum class State { released, working, ready, executing, lost };

    template <class Work>
    void inThread(Work work);
    void attach();
    void detach();
    void read();
    void take(std::size_t count);
    void write(std::span<const std::uint8_t> rest);
    void endTurn();
    void lose(const std::exception& why);

    asio::io_context& context_;
    Access access_;
    Owner& owner_;
    std::shared_ptr<TAVOXDevice> device_;
    State state_ = State::released;
    server::Socket socket_;
    /// Of attachments, to tell late events of an earlier one.
    std::uint64_t attachment_ = 0;
    std::array<std::uint8_t, 65536> received_{};
    std::shared_ptr<Turn> turn_;
    server::ReplyScanner scanner_;
    bool isOpening_ = false;
    std::atomic<bool> isThreadDone_ = false;
    bool isFeeding_ = false;
    bool isWriting_ = false;
    bool isHurried_ = false;
    bool held_ = false;
    bool isReading_ = false;
    asio::steady_timer limit_;
    std::thread thread_;
};

} // namespace TAVO::cli
