#include <tavo/client/wire/internal/socket.h>

#include <algorithm>
#include <array>
#include <limits>
#include <mutex>

// Before windows.h, which would otherwise declare version 1 of the socket interface.
#include <winsock2.h>
#include <ws2tcpip.h>

#include <windows.h>

namespace TAVO::sockets {

namespace {

SOCKET system(Handle socket) noexcept { return static_cast<SOCKET>(socket); }

std::string systemText(ErrorCode code) {
    char* text = nullptr;
    const DWORD length = ::FormatMessageA(
        FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
        static_cast<DWORD>(code), MAKELANGID(LANG_NEUTRAL, SUBLANG_DEFAULT), reinterpret_cast<char*>(&text),
        0, nullptr);
    if (length == 0)
        return {};
    std::string copy(text, length);
    ::LocalFree(text);
    return copy;
}

constexpr long pauseOfConnect = 20 * 1000;
// select() may not notice an interrupt.
constexpr std::chrono::milliseconds longestWait{50};

void setBlocking(SOCKET socket, bool blocking) noexcept {
    u_long nonBlocking = blocking ? 0 : 1;
    ::ioctlsocket(socket, static_cast<long>(FIONBIO), &nonBlocking);
}

// A blocking connect() cannot be cut short by another thread; a select() in short steps can.
std::optional<ErrorCode> connectTo(SOCKET socket, const addrinfo& address,
                                   const std::function<bool()>& givesUp) {
    setBlocking(socket, false);
    ErrorCode outcome = 0;
    if (::connect(socket, address.ai_addr, static_cast<int>(address.ai_addrlen)) != 0)
        outcome = ::WSAGetLastError();
    if (outcome == WSAEWOULDBLOCK) {
        while (true) {
            fd_set connected{1, {socket}};
            fd_set failed{1, {socket}};
            timeval pause{0, pauseOfConnect};
            if (::select(0, nullptr, &connected, &failed, &pause) != 0)
                break;
            if (givesUp())
                return std::nullopt;
        }
        int length = sizeof outcome;
        if (::getsockopt(socket, SOL_SOCKET, SO_ERROR, reinterpret_cast<char*>(&outcome), &length) != 0)
            outcome = ::WSAGetLastError();
    }
    setBlocking(socket, true);
    return outcome;
}

} // namespace

std::string errorText(ErrorCode code) {
    return "[ErrorCode " + std::to_string(code) + ":" + systemText(code) + "]";
}

ErrorCode connectionReset() noexcept { return WSAECONNRESET; }
ErrorCode notConnected() noexcept { return WSAENOTCONN; }
std::string noSuchPortText() { return errorText(WSATYPE_NOT_FOUND); }

bool startUp() noexcept {
    static std::mutex mutex;
    static bool started = false;
    const std::lock_guard lock(mutex);
    if (!started) {
        WSADATA data{};
        started = ::WSAStartup(MAKEWORD(2, 2), &data) == 0;
    }
    return started;
}

std::optional<ConnectFailure> connect(const std::string& host, const std::string& port, Handle& socket,
                                      const std::function<bool()>& givesUp) {
    socket = closedHandle;

    addrinfo hints{};
    hints.ai_family = AF_UNSPEC;
    hints.ai_socktype = SOCK_STREAM;
    hints.ai_protocol = IPPROTO_TCP;
    addrinfo* addresses = nullptr;
    if (::getaddrinfo(host.c_str(), port.c_str(), &hints, &addresses) != 0)
        return ConnectFailure{ConnectStep::resolve, errorText(::WSAGetLastError())};

    auto step = ConnectStep::createSocket;
    ErrorCode error = 0;
    const SOCKET created = ::socket(addresses->ai_family, addresses->ai_socktype, addresses->ai_protocol);
    socket = static_cast<Handle>(created);
    if (created == INVALID_SOCKET) {
        error = ::WSAGetLastError();
    } else {
        // Child processes must not inherit it.
        ::SetHandleInformation(reinterpret_cast<HANDLE>(created), HANDLE_FLAG_INHERIT, 0);
        const auto outcome = connectTo(created, *addresses, givesUp);
        step = outcome ? ConnectStep::connect : ConnectStep::givenUp;
        error = outcome.value_or(WSAEINTR);
    }
    ::freeaddrinfo(addresses);

    if (error == 0)
        return std::nullopt;
    if (socket != closedHandle)
        close(socket);
    socket = closedHandle;
    return ConnectFailure{step, errorText(error)};
}

void close(Handle socket) noexcept { ::closesocket(system(socket)); }

void shutDown(Handle socket) noexcept {
    const int before = ::WSAGetLastError();
    // shutdown() ends later calls, CancelIoEx() the one that waits already.
    ::shutdown(system(socket), SD_BOTH);
    ::CancelIoEx(reinterpret_cast<HANDLE>(system(socket)), nullptr);
    ::WSASetLastError(before);
}

bool pollReadable(Handle socket) noexcept {
    fd_set readable{};
    readable.fd_count = 1;
    readable.fd_array[0] = system(socket);
    timeval noTime{0, 0};
    return ::select(0, &readable, nullptr, nullptr, &noTime) > 0;
}

bool awaitReady(Handle socket, Readiness readiness, std::chrono::milliseconds atMost) noexcept {
    fd_set watched{};
    watched.fd_count = 1;
    watched.fd_array[0] = system(socket);
    const std::chrono::microseconds wait = std::min(atMost, longestWait);
    timeval time{0, static_cast<long>(wait.count())};
    const bool receives = readiness == Readiness::toReceive;
    return ::select(0, receives ? &watched : nullptr, receives ? nullptr : &watched, nullptr, &time) != 0;
}

Transfer sendGathered(Handle socket, std::span<const Run> runs) noexcept {
    std::array<WSABUF, maximumRuns> buffers;
    DWORD count = 0;
    for (const Run run : runs) {
        const auto length = std::min<std::size_t>(run.size(), std::numeric_limits<ULONG>::max());
        buffers[count].len = static_cast<ULONG>(length);
        buffers[count].buf = reinterpret_cast<char*>(const_cast<std::uint8_t*>(run.data()));
        ++count;
        if (length < run.size())
            break;
    }
    DWORD sent = 0;
    if (::WSASend(system(socket), buffers.data(), count, &sent, 0, nullptr, nullptr) != 0)
        return {0, ::WSAGetLastError()};
    return {sent, 0};
}

Transfer sendWithoutWaiting(Handle socket, std::span<const Run> runs) noexcept {
    setBlocking(system(socket), false);
    const auto sent = sendGathered(socket, runs);
    setBlocking(system(socket), true);
    return sent.error == WSAEWOULDBLOCK ? Transfer() : sent;
}

Transfer receiveOnce(Handle socket, std::uint8_t* buffer, std::size_t length) noexcept {
    const auto limit = std::min<std::size_t>(length, std::numeric_limits<int>::max());
    const int received = ::recv(system(socket), reinterpret_cast<char*>(buffer), static_cast<int>(limit), 0);
    if (received < 0)
        return {0, ::WSAGetLastError()};
    return {static_cast<std::size_t>(received), 0};
}

} // namespace TAVO::sockets
