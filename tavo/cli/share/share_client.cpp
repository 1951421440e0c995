#include <tavo/cli/share/share_client.h>

#include <algorithm>
#include <exception>
#include <utility>

#include <asio/buffer.hpp>
#include <asio/ip/tcp.hpp>
#include <asio/post.hpp>
#include <fmt/format.h>
#include <poll.h>
#include <sys/socket.h>

namespace TAVO::cli {

namespace {

// How much of a reply waits for a client before the device has to.
constexpr std::size_t window = std::size_t{1} << 20;
// How long the device, and the others, wait for a client that takes nothing.
constexpr std::chrono::seconds patienceOfLine{5};
// How long a reply that holds up nobody is kept for a client that takes nothing of it.
constexpr std::chrono::seconds patience{30};

std::string peerOf(server::Socket& socket) {
    asio::error_code failure;
    const auto remote = socket.remote_endpoint(failure);
    if (failure)
        return "?";
    if (remote.protocol().family() == AF_UNIX) {
        ucred who{};
        socklen_t length = sizeof who;
        ::getsockopt(socket.native_handle(), SOL_SOCKET, SO_PEERCRED, &who, &length);
        return fmt::format("process {}", who.pid);
    }
    asio::ip::tcp::endpoint endpoint;
    endpoint.resize(remote.size());
    std::copy_n(reinterpret_cast<const std::uint8_t*>(remote.data()), remote.size(),
                reinterpret_cast<std::uint8_t*>(endpoint.data()));
    const auto address = endpoint.address().to_string();
    return endpoint.address().is_v6() ? fmt::format("[{}]:{}", address, endpoint.port())
                                      : fmt::format("{}:{}", address, endpoint.port());
}

} // namespace

// NOLINTNEXTLINE(cppcoreguidelines-pro-type-member-init): clearing `received_` would cost each connection
ShareClient::ShareClient(Owner& owner, server::Socket socket, std::uint64_t number)
    : owner_(owner)
    , socket_(std::move(socket))
    , stall_(socket_.get_executor())
    , number_(number)
    , peer_(peerOf(socket_)) {}

void ShareClient::start() {
    asio::error_code ignored;
    socket_.set_option(asio::ip::tcp::no_delay(true), ignored);
    socket_.set_option(asio::socket_base::keep_alive(true), ignored);
    socket_.non_blocking(true, ignored);
    read();
}

void ShareClient::close() {
    if (std::exchange(closed_, true))
        return;
    const auto self = shared_from_this();
    asio::error_code ignored;
    socket_.close(ignored);
    stall_.cancel();
    owner_.clients().changeHeld(std::exchange(heldBytes_, 0), 0);
    owner_.left(*this);
}

void ShareClient::closeAfterReply(bool gently) {
    closesAfterReply_ = true;
    closesGently_ = gently;
}

bool ShareClient::hasEndedSending() {
    pollfd watched{socket_.native_handle(), POLLRDHUP, 0};
    return ::poll(&watched, 1, 0) > 0;
}

// Input that is left unread would reset the connection before the client has the reply.
void ShareClient::closeGently() {
    asio::error_code ignored;
    socket_.shutdown(asio::socket_base::shutdown_send, ignored);
    limitStall();
    discard();
}

void ShareClient::discard() {
    socket_.async_read_some(asio::buffer(received_),
                            [self = shared_from_this()](const asio::error_code& failure, std::size_t) {
                                if (self->closed_)
                                    return;
                                if (failure)
                                    return self->close();
                                self->discard();
                            });
}

bool ShareClient::note() {
    active_ = std::chrono::steady_clock::now();
    const auto held =
        assembler_.size() + waiting_.size() + writing_.size() + (turn_ ? turn_->plan().heldBytes() : 0);
    owner_.clients().changeHeld(std::exchange(heldBytes_, held), held);
    owner_.clients().boundHeld(*this);
    return !closed_;
}

// On lack of memory, drop this client, not the share.
template <class Action>
void ShareClient::attempt(Action action) {
    try {
        action();
    } catch (const std::exception&) {
        close();
    }
}

void ShareClient::read() {
    socket_.async_read_some(asio::buffer(received_),
                            [self = shared_from_this()](const asio::error_code& failure, std::size_t count) {
                                if (self->closed_)
                                    return;
                                if (failure)
                                    return self->close();
                                self->take(count);
                            });
}

void ShareClient::take(std::size_t count) {
    attempt([&] {
        assembler_.feed({received_.data(), count});
        if (note())
            next();
    });
}

void ShareClient::next() {
    using State = server::RequestAssembler::State;
    switch (assembler_.scan()) {
    case State::incomplete:
        return read();
    case State::tooLarge:
        assembler_ = {};
        return owner_.refuse(*this);
    case State::complete:
        owner_.serve(*this, assembler_.take());
    }
}

void ShareClient::append(std::span<const std::uint8_t> bytes) {
    const auto self = shared_from_this();
    waiting_.insert(waiting_.end(), bytes.begin(), bytes.end());
    if (unwritten() > window)
        write();
    if (unwritten() > window)
        setHolding(true);
}

void ShareClient::finish() {
    const auto self = shared_from_this();
    turn_.reset();
    isReplyWhole_ = true;
    setHolding(false);
    write();
    if (isWriting_)
        note();
}

void ShareClient::setHolding(bool holding) {
    if (closed_ || std::exchange(isHolding_, holding) == holding)
        return;
    limitStall();
    owner_.holdReply(*this, holding);
}

// While the device waits, small pieces do not count: the client must make room.
void ShareClient::limitStall() {
    const bool isUrgent = isHolding_ || closesAfterReply_;
    stall_.expires_after(isUrgent ? patienceOfLine : patience);
    stall_.async_wait([self = shared_from_this(), isUrgent](const asio::error_code& cancelled) {
        if (cancelled || self->closed_)
            return;
        if (self->isHolding_ && !self->owner_.othersWait())
            self->limitStall();
        else if (self->isWriting_ || isUrgent)
            self->close();
    });
}

void ShareClient::write() {
    while (!isWriting_ && !closed_) {
        if (writtenBytes_ == writing_.size() && !refill())
            return;
        asio::error_code failure;
        writtenBytes_ += socket_.write_some(
            asio::buffer(writing_.data() + writtenBytes_, writing_.size() - writtenBytes_), failure);
        if (failure == asio::error::would_block)
            return awaitRoom();
        if (failure)
            return close();
        if (unwritten() < window / 2)
            setHolding(false);
    }
}

bool ShareClient::refill() {
    constexpr std::size_t keptCapacity = std::size_t{64} << 10;
    writing_.clear();
    writtenBytes_ = 0;
    std::swap(writing_, waiting_);
    if (waiting_.capacity() > keptCapacity)
        waiting_ = {};
    if (!writing_.empty())
        return true;
    if (isReplyWhole_)
        replied();
    return false;
}

void ShareClient::awaitRoom() {
    isWriting_ = true;
    if (!isHolding_)
        limitStall();
    socket_.async_wait(asio::socket_base::wait_write,
                       [self = shared_from_this()](const asio::error_code& failure) {
                           self->isWriting_ = false;
                           if (self->closed_)
                               return;
                           if (failure)
                               return self->close();
                           self->attempt([&] { self->write(); });
                       });
}

void ShareClient::replied() {
    stall_.cancel();
    isReplyWhole_ = false;
    if (closesAfterReply_)
        return closesGently_ ? closeGently() : close();
    if (!note())
        return;
    if (assembler_.size() == 0)
        return read();
    // Not at once: a client may send thousands of requests ahead of their replies.
    asio::post(socket_.get_executor(), [self = shared_from_this()] {
        if (!self->closed_)
            self->attempt([&] { self->next(); });
    });
}

} // namespace TAVO::cli
