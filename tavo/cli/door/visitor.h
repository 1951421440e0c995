#pragma once

#include <array>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <vector>

#include <asio/steady_timer.hpp>

#include <tavo/server/listener.h>

namespace TAVO::cli {

/// The connection of one client. One thread reads and writes here; another, which runs the socket's context,
/// moves the bytes meanwhile, so that a client is read from while the device is busy.
class Visitor : public std::enable_shared_from_this<Visitor> {
public:
    using Milliseconds = std::chrono::milliseconds;
    enum class Arrival { bytes, nothing, end };

    static constexpr std::chrono::seconds patienceAtEnd{4};

    struct Bounds {
        /// How many bytes are kept before the client has to wait, and before send() does.
        std::size_t received = std::size_t{1} << 20;
        std::size_t unsent = std::size_t{1} << 20;
        /// How long after its end what a client sent still counts.
        Milliseconds finishing = patienceAtEnd;
        /// How long send() waits for a client that takes nothing.
        Milliseconds untaken = std::chrono::seconds(30);
    };

    /// What the client sent does not count any more.
    class Gone : public std::exception {
    public:
        const char* what() const noexcept override { return "the client has gone"; }
    };

    Visitor(server::Socket socket, const Bounds& bounds);
    /// Begins to read.
    void start();

    /// Puts some of what has come in place of `bytes`. If there is nothing, waits for it; no longer than
    /// `patience`, if that is given. What a client sent is dropped when it ended sending, or was lost,
    /// longer than the bound ago.
    /// @throws Interrupted when a signal came.
    Arrival take(std::vector<std::uint8_t>& bytes, std::optional<Milliseconds> patience);
    /// Sends. Waits while too much is unsent, and closes the connection if the client takes nothing of it for
    /// too long; does nothing when the connection is closed.
    /// @throws Gone, also if there is nothing to send, where take() would drop what came; Interrupted when a
    ///         signal came.
    void send(std::span<const std::uint8_t> bytes);
    /// From now on send() never throws Gone.
    void stopTellingOfEnd();
    /// Waits no longer than that for the connection to be closed.
    /// @return whether it is. @throws Interrupted when a signal came.
    bool awaitGoing(Milliseconds patience);
    /// Closes the connection when all is sent, for which a client has `patienceAtEnd`, and read.
    /// @throws Interrupted when a signal came.
    void finish();
    /// Closes the connection at once.
    void close();

private:
    using Clock = std::chrono::steady_clock;

    template <class Condition>
    void await(std::unique_lock<std::mutex>& lock, Condition condition,
               std::optional<Clock::time_point> end = {});
    void noteEnd();
    bool isGone() const { return endedAt_ && Clock::now() - *endedAt_ >= bounds_.finishing; }
    std::size_t heldBytes() const { return received_.size() - taken_; }
    bool isUnsent() const { return !unsent_.empty() || isWriting_; }

    // In the thread of the context.
    void read();
    void readMore(std::size_t count);
    void write();
    void limitTheEnd();
    void shutDown();

    server::Socket socket_;
    asio::steady_timer limit_;
    const Bounds bounds_;
    std::array<std::uint8_t, 65536> arriving_;
    std::vector<std::uint8_t> sending_;

    std::mutex mutex_;
    std::condition_variable changed_;
    std::vector<std::uint8_t> received_;
    std::size_t taken_ = 0; ///< of received_
    std::vector<std::uint8_t> unsent_;
    bool isReading_ = false;
    bool isWriting_ = false;
    bool hasEnded_ = false; ///< the client sends no more
    bool tellsOfEnd_ = true;
    bool isDropping_ = false; ///< what comes
    bool isClosed_ = false;
    /// When the client was there last, once it has ended sending or the connection is closed.
    std::optional<Clock::time_point> endedAt_;
    Clock::time_point takenAt_; ///< by the client
};

} // namespace TAVO::cli
