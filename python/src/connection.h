#pragma once

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include <pybind11/pybind11.h>

#include <tavo/client/object/device.h>
#include <tavo/client/wire/interrupter.h>

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

    /// Ends the running exchange of another thread.
    void interrupt();
    /// Waits for the running exchange, gives the lock back and disconnects. Does nothing when closed.
    void close();
    bool isClosed() const { return closed_; }

    /// Closes all devices, as the interpreter ends.
    static void closeAll();
    /// Lets go of the sockets of all devices, in a process that was forked off.
    static void forgetAll();

private:
    explicit Connection(std::shared_ptr<Interrupter> interrupter);

    class Turn;

    void requireOpen() const;
    /// Runs `work` without the GIL and raises what goes wrong. The caller has the turn.
    void runOutside(const std::function<void()>& work);
    void release();
    bool isOfThisProcess() const { return generation_ == process::generation(); }

    std::shared_ptr<Device> device_;
    std::shared_ptr<Interrupter> interrupter_;
    std::timed_mutex turn_;
    std::atomic<std::thread::id> owner_ = std::thread::id();
    /// Of the thread that has the turn, while it waits.
    NoGil* outside_ = nullptr;
    bool signalRaised_ = false;
    std::atomic<bool> closed_ = false;
    bool closing_ = false;
    const unsigned generation_;
};

} // namespace TAVO::python
