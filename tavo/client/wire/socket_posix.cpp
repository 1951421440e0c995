#include <tavo/client/wire/internal/socket.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <limits>

#include <fcntl.h>
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

std::string resolverText(int code) { return formatted(code, ::gai_strerror(code)); }

// There are two kinds of strerror_r(): GNU's returns the text, POSIX's returns a code and fills the buffer.
[[maybe_unused]] const char* reentrantText(const char* text, const char*) noexcept { return text; }
[[maybe_unused]] const char* reentrantText(int, const char* buffer) noexcept { return buffer; }

/// As poll(): how many are ready, 0 when the time is over, negative for an error.
int waitFor(Handle socket, short events, int timeOut) noexcept {
    pollfd entry{descriptor(socket), events, 0};
    int ready = 0;
    do {
        ready = ::poll(&entry, 1, timeOut);
    } while (ready < 0 && errno == EINTR);
    return ready;
}

constexpr int pauseOfConnect = 20;

// A blocking connect() cannot be cut short by another thread; a poll() in short steps can.
std::optional<ErrorCode> connectTo(Handle socket, const addrinfo& address,
                                   const std::function<bool()>& givesUp) {
    const int flags = ::fcntl(descriptor(socket), F_GETFL);
    ::fcntl(descriptor(socket), F_SETFL, flags | O_NONBLOCK);
    ErrorCode outcome = 0;
    if (::connect(descriptor(socket), address.ai_addr, address.ai_addrlen) != 0)
        outcome = errno;
    if (outcome == EINPROGRESS || outcome == EINTR) {
        int ready = 0;
        while ((ready = waitFor(socket, POLLOUT, pauseOfConnect)) == 0)
            if (givesUp())
                return std::nullopt;
        socklen_t length = sizeof outcome;
        if (ready < 0 || ::getsockopt(descriptor(socket), SOL_SOCKET, SO_ERROR, &outcome, &length) != 0)
            outcome = errno;
    }
    ::fcntl(descriptor(socket), F_SETFL, flags);
    return outcome;
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

Transfer sendRuns(Handle socket, std::span<const Run> runs, int flags) noexcept {
    // Only the elements of the runs are read.
    std::array<iovec, maximumRuns> vectors; // NOLINT(cppcoreguidelines-pro-type-member-init)
    for (std::size_t i = 0; i < runs.size(); ++i)
        vectors[i] = {const_cast<std::uint8_t*>(runs[i].data()), runs[i].size()};
    msghdr message{};
    message.msg_iov = vectors.data();
    message.msg_iovlen = static_cast<decltype(message.msg_iovlen)>(runs.size());
    return resumed([&] { return ::sendmsg(descriptor(socket), &message, flags); });
}

} // namespace

std::string errorText(ErrorCode code) {
    std::array<char, 256> buffer{};
    return formatted(code, reentrantText(::strerror_r(code, buffer.data(), buffer.size()), buffer.data()));
}

ErrorCode connectionReset() noexcept { return ECONNRESET; }
ErrorCode notConnected() noexcept { return ENOTCONN; }
std::string noSuchPortText() { return resolverText(EAI_SERVICE); }

bool startUp() noexcept { return true; }

std::optional<ConnectFailure> connect(const std::string& host, const std::string& port, Handle& socket,
                                      const std::function<bool()>& givesUp) {
    socket = closedHandle;

    addrinfo hints{};
    hints.ai_family = AF_UNSPEC;
    hints.ai_socktype = SOCK_STREAM;
    hints.ai_protocol = IPPROTO_TCP;
    addrinfo* addresses = nullptr;
    const int resolution = ::getaddrinfo(host.c_str(), port.c_str(), &hints, &addresses);
    if (resolution != 0)
        return ConnectFailure{ConnectStep::resolve, resolverText(resolution)};

    auto step = ConnectStep::createSocket;
    ErrorCode error = 0;
    socket = ::socket(addresses->ai_family, addresses->ai_socktype | SOCK_CLOEXEC, addresses->ai_protocol);
    if (socket == closedHandle) {
        error = errno;
    } else {
        const auto outcome = connectTo(socket, *addresses, givesUp);
        step = outcome ? ConnectStep::connect : ConnectStep::givenUp;
        error = outcome.value_or(EINTR);
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

void shutDown(Handle socket) noexcept {
    const int before = errno;
    ::shutdown(descriptor(socket), SHUT_RDWR);
    errno = before;
}

bool pollReadable(Handle socket) noexcept { return waitFor(socket, POLLIN, 0) > 0; }

bool awaitReady(Handle socket, Readiness readiness, std::chrono::milliseconds atMost) noexcept {
    const short events = readiness == Readiness::toReceive ? POLLIN : POLLOUT;
    const auto longest = std::chrono::milliseconds(std::numeric_limits<int>::max());
    pollfd entry{descriptor(socket), events, 0};
    const int ready = ::poll(&entry, 1, static_cast<int>(std::min(atMost, longest).count()));
    return ready > 0 || (ready < 0 && errno != EINTR);
}

Transfer sendGathered(Handle socket, std::span<const Run> runs) noexcept {
    return sendRuns(socket, runs, MSG_NOSIGNAL);
}

Transfer sendWithoutWaiting(Handle socket, std::span<const Run> runs) noexcept {
    const auto sent = sendRuns(socket, runs, MSG_NOSIGNAL | MSG_DONTWAIT);
    return sent.error == EAGAIN ? Transfer() : sent;
}

Transfer receiveOnce(Handle socket, std::uint8_t* buffer, std::size_t length) noexcept {
    return resumed([&] { return ::recv(descriptor(socket), buffer, length, 0); });
}

} // namespace TAVO::sockets
