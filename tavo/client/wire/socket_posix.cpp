#include <tavo/client/wire/internal/socket.h>

#include <array>
#include <cerrno>
#include <cstring>

#include <netdb.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/uio.h>
#include <unistd.h>

namespace TAVO::sockets {

namespace {

int descriptor(Handle socket) noexcept { return static_cast<int>(socket); }

std::string formatted(int code, const char* text) {
    return "[ErrorCode " + std::to_string(code) + ":" + text + "]";
}

// strerror_r() comes in two shapes: one returns the text, one a code and fills the buffer.
[[maybe_unused]] const char* reentrantText(const char* text, const char*) noexcept { return text; }
[[maybe_unused]] const char* reentrantText(int, const char* buffer) noexcept { return buffer; }

bool waitFor(Handle socket, short events, int timeOut) noexcept {
    pollfd entry{descriptor(socket), events, 0};
    int ready = 0;
    do {
        ready = ::poll(&entry, 1, timeOut);
    } while (ready < 0 && errno == EINTR);
    return ready > 0;
}

// An interrupted connect goes on without us; asking again would only yield EALREADY.
ErrorCode finishInterruptedConnect(Handle socket) noexcept {
    if (!waitFor(socket, POLLOUT, -1))
        return errno;
    ErrorCode outcome = 0;
    socklen_t length = sizeof outcome;
    if (::getsockopt(descriptor(socket), SOL_SOCKET, SO_ERROR, &outcome, &length) != 0)
        return errno;
    return outcome;
}

ErrorCode connectTo(Handle socket, const addrinfo& address) noexcept {
    if (::connect(descriptor(socket), address.ai_addr, address.ai_addrlen) == 0)
        return 0;
    return errno == EINTR ? finishInterruptedConnect(socket) : errno;
}

template <class Call>
Transfer resumed(Call call) noexcept {
    ssize_t moved = 0;
    do {
        moved = call();
    } while (moved < 0 && errno == EINTR);
    if (moved < 0)
        return {0, errno};
    return {static_cast<std::size_t>(moved), 0};
}

} // namespace

std::string errorText(ErrorCode code) {
    std::array<char, 256> buffer{};
    return formatted(code, reentrantText(::strerror_r(code, buffer.data(), buffer.size()), buffer.data()));
}

ErrorCode connectionReset() noexcept { return ECONNRESET; }
ErrorCode notConnected() noexcept { return ENOTCONN; }

bool startUp() noexcept { return true; }

std::optional<ConnectFailure> connect(const std::string& host, const std::string& port, Handle& socket) {
    socket = closedHandle;

    addrinfo hints{};
    hints.ai_family = AF_UNSPEC;
    hints.ai_socktype = SOCK_STREAM;
    hints.ai_protocol = IPPROTO_TCP;
    addrinfo* addresses = nullptr;
    const int resolution = ::getaddrinfo(host.c_str(), port.c_str(), &hints, &addresses);
    if (resolution != 0)
        return ConnectFailure{ConnectStep::resolve, formatted(resolution, ::gai_strerror(resolution))};

    auto step = ConnectStep::createSocket;
    ErrorCode error = 0;
    socket = ::socket(addresses->ai_family, addresses->ai_socktype | SOCK_CLOEXEC, addresses->ai_protocol);
    if (socket == closedHandle) {
        error = errno;
    } else {
        step = ConnectStep::connect;
        error = connectTo(socket, *addresses);
    }
    ::freeaddrinfo(addresses);

    if (error == 0)
        return std::nullopt;
    if (socket != closedHandle)
        close(socket);
    socket = closedHandle;
    return ConnectFailure{step, errorText(error)};
}

void close(Handle socket) noexcept { ::close(descriptor(socket)); }

bool pollReadable(Handle socket) noexcept { return waitFor(socket, POLLIN, 0); }

Transfer sendGathered(Handle socket, std::span<const Run> runs) noexcept {
    std::array<iovec, maximumRuns> vectors;
    for (std::size_t i = 0; i < runs.size(); ++i)
        vectors[i] = {const_cast<std::uint8_t*>(runs[i].data()), runs[i].size()};
    msghdr message{};
    message.msg_iov = vectors.data();
    message.msg_iovlen = static_cast<decltype(message.msg_iovlen)>(runs.size());
    return resumed([&] { return ::sendmsg(descriptor(socket), &message, MSG_NOSIGNAL); });
}

Transfer receiveOnce(Handle socket, std::uint8_t* buffer, std::size_t length) noexcept {
    return resumed([&] { return ::recv(descriptor(socket), buffer, length, 0); });
}

} // namespace TAVO::sockets
