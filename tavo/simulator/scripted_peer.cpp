#include <tavo/simulator/scripted_peer.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <stdexcept>
#include <utility>

#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <tavo/client/wire/byte_order.h>
#include <tavo/simulator/internal/thread_without_signals.h>

namespace TAVO::simulator {

namespace {

using Bytes = std::vector<std::uint8_t>;
using Moment = std::chrono::steady_clock::time_point;

[[noreturn]] void throwSystemError(const std::string& what) {
    throw std::runtime_error(what + ": " + std::strerror(errno)); // NOLINT(concurrency-mt-unsafe)
}

Moment after(std::chrono::milliseconds patience) { return std::chrono::steady_clock::now() + patience; }

void awaitEvent(int descriptor, short events, Moment deadline, const char* what) {
    pollfd entry{descriptor, events, 0};
    while (true) {
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
            deadline - std::chrono::steady_clock::now());
        if (left.count() <= 0)
            throw std::runtime_error(std::string("waited too long to ") + what);
        if (::poll(&entry, 1, static_cast<int>(left.count())) > 0)
            return;
    }
}

bool hasEvent(int descriptor, std::chrono::milliseconds wait) {
    pollfd entry{descriptor, POLLIN, 0};
    return ::poll(&entry, 1, static_cast<int>(wait.count())) > 0;
}

void closeDescriptor(int& descriptor) {
    if (descriptor >= 0)
        ::close(descriptor);
    descriptor = -1;
}

bool triesAgain() { return errno == EAGAIN || errno == EWOULDBLOCK || errno == EINTR; }

int boundSocket(std::uint16_t port) {
    int made = ::socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
    if (made < 0)
        throwSystemError("socket");
    const int yes = 1;
    ::setsockopt(made, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(port);
    if (::bind(made, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
        const int reason = errno;
        closeDescriptor(made);
        errno = reason;
        throwSystemError("bind");
    }
    return made;
}

std::uint16_t portOf(int descriptor) {
    sockaddr_in address{};
    socklen_t length = sizeof address;
    if (::getsockname(descriptor, reinterpret_cast<sockaddr*>(&address), &length) != 0)
        throwSystemError("getsockname");
    return ntohs(address.sin_port);
}

void append(Bytes& bytes, const Bytes& more) { bytes.insert(bytes.end(), more.begin(), more.end()); }

} // namespace

PeerConnection::PeerConnection(int descriptor, std::chrono::milliseconds patience)
    : descriptor_(descriptor)
    , patience_(patience) {}

PeerConnection::PeerConnection(PeerConnection&& other) noexcept
    : descriptor_(std::exchange(other.descriptor_, -1))
    , patience_(other.patience_) {}

PeerConnection& PeerConnection::operator=(PeerConnection&& other) noexcept {
    std::swap(descriptor_, other.descriptor_);
    std::swap(patience_, other.patience_);
    return *this;
}

PeerConnection::~PeerConnection() { close(); }

std::size_t PeerConnection::receive(std::uint8_t* bytes, std::size_t count, Moment deadline,
                                    const char* what) {
    while (true) {
        awaitEvent(descriptor_, POLLIN, deadline, what);
        const auto got = ::recv(descriptor_, bytes, count, 0);
        if (got >= 0)
            return static_cast<std::size_t>(got);
        if (!triesAgain())
            throwSystemError(what);
    }
}

Bytes PeerConnection::read(std::size_t count) {
    Bytes bytes;
    const auto deadline = after(patience_);
    std::array<std::uint8_t, 65536> piece;
    while (bytes.size() < count) {
        const auto got =
            receive(piece.data(), std::min(piece.size(), count - bytes.size()), deadline, "read");
        if (got == 0)
            throw std::runtime_error("the client closed the connection after " +
                                     std::to_string(bytes.size()) + " of " + std::to_string(count) +
                                     " bytes");
        bytes.insert(bytes.end(), piece.begin(), piece.begin() + static_cast<std::ptrdiff_t>(got));
    }
    return bytes;
}

Bytes PeerConnection::readRequest() {
    constexpr std::size_t headSize = 8, countOffset = 4, callHeadSize = 12, sizeOffset = 8;
    auto request = read(headSize);
    auto callsLeft = TAVOX::loadBigEndian<std::uint32_t>(request.data() + countOffset);
    for (; callsLeft > 0; --callsLeft) {
        const auto head = read(callHeadSize);
        append(request, head);
        append(request, read(TAVOX::loadBigEndian<std::uint32_t>(head.data() + sizeOffset)));
    }
    return request;
}

Bytes PeerConnection::readToEnd() {
    Bytes bytes;
    const auto deadline = after(patience_);
    std::array<std::uint8_t, 65536> piece;
    while (const auto got = receive(piece.data(), piece.size(), deadline, "see the client close"))
        bytes.insert(bytes.end(), piece.begin(), piece.begin() + static_cast<std::ptrdiff_t>(got));
    return bytes;
}

void PeerConnection::write(const Bytes& bytes) {
    const auto deadline = after(patience_);
    for (std::size_t done = 0; done < bytes.size();) {
        awaitEvent(descriptor_, POLLOUT, deadline, "write");
        const auto sent = ::send(descriptor_, bytes.data() + done, bytes.size() - done, MSG_NOSIGNAL);
        if (sent >= 0)
            done += static_cast<std::size_t>(sent);
        else if (!triesAgain())
            throwSystemError("write");
    }
}

void PeerConnection::finishWriting() { ::shutdown(descriptor_, SHUT_WR); }

void PeerConnection::close() { closeDescriptor(descriptor_); }

void PeerConnection::reset() {
    const linger now{1, 0};
    ::setsockopt(descriptor_, SOL_SOCKET, SO_LINGER, &now, sizeof now);
    close();
}

bool PeerConnection::hasInput(std::chrono::milliseconds wait) const { return hasEvent(descriptor_, wait); }

bool PeerConnection::atEnd() const {
    std::uint8_t next = 0;
    return ::recv(descriptor_, &next, 1, MSG_PEEK) <= 0;
}

PeerListener::PeerListener(int backlog, std::chrono::milliseconds patience)
    : patience_(patience)
    , reservation_(boundSocket(0)) {
    try {
        port_ = portOf(reservation_);
        listen(backlog);
    } catch (const std::exception&) {
        closeDescriptor(reservation_);
        closeDescriptor(listening_);
        throw;
    }
}

PeerListener::~PeerListener() {
    closeDescriptor(listening_);
    closeDescriptor(reservation_);
}

PeerConnection PeerListener::accept() {
    const auto deadline = after(patience_);
    while (true) {
        awaitEvent(listening_, POLLIN, deadline, "accept");
        const int accepted = ::accept4(listening_, nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC);
        if (accepted >= 0)
            return PeerConnection(accepted, patience_);
        if (!triesAgain() && errno != ECONNABORTED)
            throwSystemError("accept");
    }
}

bool PeerListener::hasWaitingClient() const { return hasEvent(listening_, std::chrono::milliseconds(0)); }

void PeerListener::stop() { closeDescriptor(listening_); }

void PeerListener::listen(int backlog) {
    closeDescriptor(listening_);
    listening_ = boundSocket(port_);
    if (::listen(listening_, backlog) != 0)
        throwSystemError("listen");
}

ScriptedPeer::ScriptedPeer(Script script, int backlog, std::chrono::milliseconds patience)
    : listener_(backlog, patience)
    , thread_(threadWithoutSignals([this, script = std::move(script)] {
        try {
            script(listener_);
        } catch (const std::exception&) {
            failure_ = std::current_exception();
        }
        listener_.stop();
    })) {}

ScriptedPeer::~ScriptedPeer() {
    if (thread_.joinable())
        thread_.join();
}

void ScriptedPeer::join() {
    if (thread_.joinable())
        thread_.join();
    if (failure_)
        std::rethrow_exception(std::exchange(failure_, nullptr));
}

} // namespace TAVO::simulator
