#include <tavo/simulator/internal/peer_socket.h>

#include <cerrno>
#include <stdexcept>
#include <string>
#include <system_error>

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace TAVO::simulator::peer_sockets {

namespace {

int descriptor(Handle socket) noexcept { return static_cast<int>(socket); }

[[noreturn]] void throwSystemError(const std::string& call, int error) {
    throw std::runtime_error(call + ": " + std::system_category().message(error));
}

// The result of a non-blocking transfer.
std::optional<std::size_t> moved(ssize_t count, const char* call) {
    if (count >= 0)
        return static_cast<std::size_t>(count);
    if (errno == EAGAIN || errno == EWOULDBLOCK || errno == EINTR)
        return std::nullopt;
    throwSystemError(call, errno);
}

} // namespace

bool waitFor(Handle socket, Event event, std::chrono::milliseconds wait) {
    pollfd entry{descriptor(socket), static_cast<short>(event == Event::input ? POLLIN : POLLOUT), 0};
    return ::poll(&entry, 1, static_cast<int>(wait.count())) > 0;
}

Handle makeBound(std::uint16_t port) {
    const int made = ::socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
    if (made < 0)
        throwSystemError("socket", errno);
    const int yes = 1;
    ::setsockopt(made, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(port);
    if (::bind(made, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
        const int error = errno;
        ::close(made);
        throwSystemError("bind", error);
    }
    return made;
}

std::uint16_t portOf(Handle socket) {
    sockaddr_in address{};
    socklen_t length = sizeof address;
    if (::getsockname(descriptor(socket), reinterpret_cast<sockaddr*>(&address), &length) != 0)
        throwSystemError("getsockname", errno);
    return ntohs(address.sin_port);
}

void listen(Handle socket, int backlog) {
    if (::listen(descriptor(socket), backlog) != 0)
        throwSystemError("listen", errno);
}

std::optional<Handle> accept(Handle listening) {
    const int accepted = ::accept4(descriptor(listening), nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC);
    if (accepted >= 0)
        return accepted;
    if (errno == EAGAIN || errno == EWOULDBLOCK || errno == EINTR || errno == ECONNABORTED)
        return std::nullopt;
    throwSystemError("accept", errno);
}

std::optional<std::size_t> receive(Handle socket, std::uint8_t* bytes, std::size_t count) {
    return moved(::recv(descriptor(socket), bytes, count, 0), "read");
}

bool isAtEnd(Handle socket) noexcept {
    std::uint8_t next = 0;
    return ::recv(descriptor(socket), &next, 1, MSG_PEEK) <= 0;
}

std::optional<std::size_t> send(Handle socket, const std::uint8_t* bytes, std::size_t count,
                                Following following) {
    // MSG_MORE is not enough: it sends the bytes as soon as the receiver makes room.
    const int heldBack = 1;
    if (following == Following::end)
        ::setsockopt(descriptor(socket), IPPROTO_TCP, TCP_CORK, &heldBack, sizeof heldBack);
    return moved(::send(descriptor(socket), bytes, count, MSG_NOSIGNAL), "write");
}

void finishSending(Handle socket) noexcept { ::shutdown(descriptor(socket), SHUT_WR); }

void close(Handle socket) noexcept { ::close(descriptor(socket)); }

void closeWithReset(Handle socket) noexcept {
    const linger now{1, 0};
    ::setsockopt(descriptor(socket), SOL_SOCKET, SO_LINGER, &now, sizeof now);
    close(socket);
}

} // namespace TAVO::simulator::peer_sockets
