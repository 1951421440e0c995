#pragma once

#include <atomic>
#include <chrono>
#include <exception>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include <pybind11/pybind11.h>

#include <tavo/client/object/device.h>
#include <tavo/client/wire/interrupter.h>
#include <tavo/toolkit/access.h>

#include "process.h"
#include "received_blocks.h"

namespace TAVO::python {

/// How a device is opened.
struct OpenWish {
    std::string host;
    int port = 0;
    std::string user;
    std::string password;
    bool secure = false;
    std::optional<std::int64_t> milliseconds;
    std::vector<std::string> only;
};

/// Ends one helper, from any thread.
class Stop {
public:
    void interrupt() noexcept { requested_ = true; }
    bool isRequested() const noexcept { return requested_; }

private:
    std::atomic<bool> requested_ = false;
};

/// What a helper has left open on the device. Owns nothing of Python.
class LeftOpen {
public:
    virtual ~LeftOpen() = default;
    /// Within a helper.
    virtual void close() = 0;
};

/// A device that threads share: they take turns. All operations need the GIL, and give it up while they wait.
/// Signals of Python are handled meanwhile; if a handler raises, the exchange is interrupted.
class Connection : public std::enable_shared_from_this<Connection> {
public:
    /// @param interrupter can end the opening.
    static std::shared_ptr<Connection> open(const OpenWish& wish, std::shared_ptr<Interrupter> interrupter);
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;
    /// Closes the device, with a ResourceWarning if nobody has.
    ~Connection();

    /// Runs `work` with the device as one turn, without the GIL.
    /// @throws py::error_already_set for everything that goes wrong.
    void run(const std::function<void(Device&)>& work);
    /// The same; long blocks of the results are added to `blocks`.
    void run(const std::function<void(Device&)>& work, ReceivedBlocks& blocks);

    /// Runs what takes several exchanges as one turn, without the GIL. A signal handler that raises,
    /// interrupt(), close() and `stop` end it, in an exchange or between two; what it gives back to the
    /// device after that may take a moment.
    /// @param stop may be empty. @param work uses an Access of this connection.
    void help(const std::shared_ptr<Stop>& stop, const std::function<void()>& work);
    /// Within help(): calls a function of Python, with the GIL. @throws Stopped if that raises.
    void callBack(const py::object& function, const std::function<py::tuple()>& arguments);

    /// Closes this before the device, in place of what was left open at the object before.
    void leave(const Object_v1_0& object, std::shared_ptr<LeftOpen> left) {
        leftOpen_[&object] = std::move(left);
    }
    /// It has been closed.
    void forget(const LeftOpen& left) {
        std::erase_if(leftOpen_, [&](const auto& each) { return each.second.get() == &left; });
    }

    /// The root of the tree.
    /// @throws py::error_already_set when there is no device any more.
    const Device& device() const {
        requireOpen();
        return *device_;
    }
    Device& device() {
        requireOpen();
        return *device_;
    }

    /// Ends the running exchange, or helper, of another thread.
    void interrupt();
    /// Waits for the running exchange, gives the lock back and disconnects. Does nothing when closed.
    /// A helper ends instead of going on.
    void close();
    bool isClosed() const { return closed_; }

    /// Closes all devices, as the interpreter ends.
    static void closeAll();
    /// Lets go of the sockets of all devices, in a process that was forked off.
    static void forgetAll();

private:
    explicit Connection(std::shared_ptr<Interrupter> interrupter);

    friend class ConnectionAccess;
    class Turn;
    /// What is known of the helper that runs.
    struct Helping {
        std::shared_ptr<Stop> stop;
        unsigned interrupts;
        /// Whether it gives something back: nothing but the end of the process cuts that short.
        bool isLast = false;
        std::chrono::steady_clock::time_point looked{};
    };
    /// A Python exception is pending.
    class Stopped : public std::exception {};

    bool isHelperToStop() const;
    void throwIfStopped();
    void runCalls(const toolkit::Methods& calls);
    void runLastCalls(const toolkit::Methods& calls);
    /// The caller has the turn.
    void closeWhatIsLeftOpen();

    void requireOpen() const;
    /// Runs `work` without the GIL and raises what goes wrong. The caller has the turn.
    void runOutside(const std::function<void()>& work);
    void release();
    bool isOfThisProcess() const { return generation_ == process::generation(); }

    std::shared_ptr<Device> device_;
    /// Used with the GIL only.
    std::map<const Object_v1_0*, std::shared_ptr<LeftOpen>> leftOpen_;
    std::shared_ptr<Interrupter> interrupter_;
    std::timed_mutex turn_;
    std::atomic<std::thread::id> owner_ = std::thread::id();
    /// Of the thread that has the turn, while it waits.
    NoGil* outside_ = nullptr;
    bool signalRaised_ = false;
    /// Of the thread that has the turn; null unless a helper runs.
    Helping* helping_ = nullptr;
    std::atomic<unsigned> interrupts_ = 0;
    /// How many threads are about to close the device.
    std::atomic<unsigned> closers_ = 0;
    std::atomic<bool> closed_ = false;
    /// Nothing interrupts any more.
    bool closing_ = false;
    const unsigned generation_;
};

/// A connection as the toolkit uses it, within Connection::help().
class ConnectionAccess : public toolkit::Access {
public:
    explicit ConnectionAccess(Connection& connection)
        : connection_(connection) {}

    void run(const toolkit::Methods& calls) override { connection_.runCalls(calls); }
    void runLast(const toolkit::Methods& calls) override { connection_.runLastCalls(calls); }
    void insist(const Method& executed) override;
    bool isRefusal(const std::exception& failure) const override;
    void throwIfStopped() override { connection_.throwIfStopped(); }
    void pause(std::chrono::milliseconds time) override;

private:
    Connection& connection_;
};

} // namespace TAVO::python
