#include <tavo/cli/door/visitor.h>

#include <algorithm>
#include <iterator>
#include <utility>

#include <asio/buffer.hpp>
#include <asio/post.hpp>
#include <asio/write.hpp>

#include <netinet/in.h>
#include <netinet/tcp.h>

#include <tavo/cli/interrupt.h>

namespace TAVO::cli {

namespace {

/// At most taken at once, so that answers do not wait for all that has come.
constexpr std::size_t mostTaken = 65536;
/// At most written before it is noted that the client takes it.
constexpr std::size_t mostWritten = 65536;
/// For a client that is told that nothing more will come.
constexpr std::chrono::milliseconds patienceForClose(500);
/// A signal wakes nobody.
constexpr std::chrono::milliseconds signalPause(50);

/// Clients send a command in two pieces, and their systems hold back the second until the first is
/// acknowledged, which takes 40 ms if it is left to the system.
void acknowledgeAtOnce(server::Socket& socket) {
#ifdef TCP_QUICKACK
    const int on = 1;
    // Where it fails it is slower, no more.
    static_cast<void>(::setsockopt(socket.native_handle(), IPPROTO_TCP, TCP_QUICKACK, &on, sizeof on));
#endif
}

} // namespace

// NOLINTNEXTLINE(cppcoreguidelines-pro-type-member-init): clearing `arriving_` would cost each connection
Visitor::Visitor(server::Socket socket, const Bounds& bounds)
    : socket_(std::move(socket))
    , limit_(socket_.get_executor())
    , bounds_(bounds) {}

void Visitor::start() {
    const std::lock_guard lock(mutex_);
    isReading_ = true;
    asio::post(socket_.get_executor(), [self = shared_from_this()] { self->read(); });
}

template <class Condition>
void Visitor::await(std::unique_lock<std::mutex>& lock, Condition condition,
                    std::optional<Clock::time_point> end) {
    while (!condition() && (!end || Clock::now() < *end)) {
        const auto step = Clock::now() + signalPause;
        changed_.wait_until(lock, end ? std::min(*end, step) : step);
        InterruptWatch::throwIfInterrupted();
    }
}

Visitor::Arrival Visitor::take(std::vector<std::uint8_t>& bytes, std::optional<Milliseconds> patience) {
    // Where something has always come, nothing waits.
    InterruptWatch::throwIfInterrupted();
    std::unique_lock lock(mutex_);
    const auto end = patience ? std::optional(Clock::now() + *patience) : std::nullopt;
    await(
        lock, [this] { return heldBytes() > 0 || hasEnded_ || isClosed_; }, end);
    bytes.clear();
    if (isGone()) {
        received_.clear();
        taken_ = 0;
    }
    if (heldBytes() == 0)
        return hasEnded_ || isClosed_ ? Arrival::end : Arrival::nothing;
    const auto count = std::min(heldBytes(), mostTaken);
    const auto first = received_.begin() + static_cast<std::ptrdiff_t>(taken_);
    bytes.assign(first, first + static_cast<std::ptrdiff_t>(count));
    taken_ += count;
    if (taken_ >= received_.size() / 2) {
        received_.erase(received_.begin(), received_.begin() + static_cast<std::ptrdiff_t>(taken_));
        taken_ = 0;
    }
    if (!isReading_ && !hasEnded_ && heldBytes() < bounds_.received / 2) {
        isReading_ = true;
        asio::post(socket_.get_executor(), [self = shared_from_this()] { self->read(); });
    }
    return Arrival::bytes;
}

void Visitor::send(std::span<const std::uint8_t> bytes) {
    std::unique_lock lock(mutex_);
    if (tellsOfEnd_ && isGone())
        throw Gone();
    if (bytes.empty())
        return;
    const auto begin = Clock::now();
    const auto isTooLong = [&] { return Clock::now() - std::max(takenAt_, begin) >= bounds_.untaken; };
    await(lock, [&] { return unsent_.size() < bounds_.unsent || isClosed_ || isTooLong(); });
    if (isClosed_)
        return;
    if (unsent_.size() >= bounds_.unsent)
        return close();
    unsent_.insert(unsent_.end(), bytes.begin(), bytes.end());
    if (!std::exchange(isWriting_, true))
        asio::post(socket_.get_executor(), [self = shared_from_this()] { self->write(); });
}

void Visitor::stopTellingOfEnd() {
    const std::lock_guard lock(mutex_);
    tellsOfEnd_ = false;
}

void Visitor::noteEnd() {
    if (!endedAt_)
        endedAt_ = Clock::now();
}

bool Visitor::awaitGoing(Milliseconds patience) {
    InterruptWatch::throwIfInterrupted();
    std::unique_lock lock(mutex_);
    await(
        lock, [this] { return isClosed_; }, Clock::now() + patience);
    return isClosed_;
}

void Visitor::finish() {
    std::unique_lock lock(mutex_);
    await(
        lock, [this] { return !isUnsent() || isClosed_; }, Clock::now() + patienceAtEnd);
    // A connection that is closed with something unread is reset, and the client may miss the last answer.
    isDropping_ = true;
    asio::post(socket_.get_executor(), [self = shared_from_this()] { self->shutDown(); });
    await(
        lock, [this] { return isClosed_; }, Clock::now() + patienceForClose);
    lock.unlock();
    close();
}

void Visitor::close() {
    asio::post(socket_.get_executor(), [self = shared_from_this()] {
        asio::error_code ignored;
        self->socket_.close(ignored);
        self->limit_.cancel();
        const std::lock_guard lock(self->mutex_);
        self->isClosed_ = true;
        self->noteEnd();
        self->changed_.notify_all();
    });
}

void Visitor::read() {
    acknowledgeAtOnce(socket_);
    socket_.async_read_some(asio::buffer(arriving_),
                            [self = shared_from_this()](const asio::error_code& failure, std::size_t count) {
                                if (!failure)
                                    return self->readMore(count);
                                const std::lock_guard lock(self->mutex_);
                                self->isReading_ = false;
                                self->hasEnded_ = true;
                                self->noteEnd();
                                self->changed_.notify_all();
                                if (failure != asio::error::eof || self->isDropping_)
                                    return self->close();
                                self->limitTheEnd();
                            });
}

void Visitor::readMore(std::size_t count) {
    const std::lock_guard lock(mutex_);
    if (!isDropping_)
        received_.insert(received_.end(), arriving_.begin(),
                         arriving_.begin() + static_cast<std::ptrdiff_t>(count));
    changed_.notify_all();
    isReading_ = isDropping_ || heldBytes() < bounds_.received;
    if (isReading_)
        read();
}

void Visitor::limitTheEnd() {
    limit_.expires_after(patienceAtEnd);
    limit_.async_wait([self = shared_from_this()](const asio::error_code& cancelled) {
        if (!cancelled)
            self->close();
    });
}

void Visitor::shutDown() {
    asio::error_code failure;
    socket_.shutdown(asio::socket_base::shutdown_send, failure);
    const std::lock_guard lock(mutex_);
    if (failure || hasEnded_)
        return close();
    if (!std::exchange(isReading_, true))
        read();
}

void Visitor::write() {
    {
        const std::lock_guard lock(mutex_);
        sending_ = std::exchange(unsent_, {});
        changed_.notify_all();
    }
    const auto noteTaken = [this](const asio::error_code& failure, std::size_t) {
        const std::lock_guard lock(mutex_);
        takenAt_ = Clock::now();
        return failure ? 0 : mostWritten;
    };
    asio::async_write(socket_, asio::buffer(sending_), noteTaken,
                      [self = shared_from_this()](const asio::error_code& failure, std::size_t) {
                          if (failure)
                              self->close();
                          std::unique_lock lock(self->mutex_);
                          self->isWriting_ = !failure && !self->unsent_.empty();
                          const bool goesOn = self->isWriting_;
                          self->changed_.notify_all();
                          lock.unlock();
                          if (goesOn)
                              self->write();
                      });
}

} // namespace TAVO::cli
