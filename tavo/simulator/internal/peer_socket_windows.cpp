#include <tavo/simulator/internal/peer_socket.h>

#include <algorithm>
#include <limits>
#include <stdexcept>
#include <string>
#include <system_error>

// The order matters: windows.h alone includes the old winsock.h.
#include <winsock2.h>

#include <windows.h>

namespace TAVO::simulator::peer_sockets {

namespace {

SOCKET system(Handle socket) noexcept { return static_cast<SOCKET>(socket); }

[[noreturn]] void throwSystemError(const std::string& call, int error) {
    throw std::runtime_error(call + ": " + std::system_category().message(error));
}

bool startUp() noexcept {
    WSADATA data{};
    return ::WSAStartup(MAKEWORD(2, 2), &data) == 0;
}

void startUpOnce() {
    static const bool started = startUp();
    if (!started)
        throw std::runtime_error("the socket library cannot be started");
}

// Makes the socket non-blocking and keeps child processes from inheriting it.
void makeOurs(SOCKET socket) noexcept {
    u_long yes = 1;
    ::ioctlsocket(socket, static_cast<long>(FIONBIO), &yes);
    ::SetHandleInformation(reinterpret_cast<HANDLE>(socket), HANDLE_FLAG_INHERIT, 0);
}

int lengthOfOne(std::size_t count) noexcept {
    return static_cast<int>(std::min<std::size_t>(count, std::numeric_limits<int>::max()));
}

// The result of a non-blocking transfer.
std::optional<std::size_t> moved(int count, const char* call) {
    if (count >= 0)
        return static_cast<std::size_t>(count);
    const int error = ::WSAGetLastError();
    if (error == WSAEWOULDBLOCK)
        return std::nullopt;
    throwSystemError(call, error);
}

} // namespace

bool waitFor(Handle socket, Event event, std::chrono::milliseconds wait) {
    WSAPOLLFD entry{system(socket), static_cast<short>(event == Event::input ? POLLIN : POLLOUT), 0};
    return ::WSAPoll(&entry, 1, static_cast<int>(wait.count())) > 0;
}

Handle makeBound(std::uint16_t port) {
    startUpOnce();
    const SOCKET made = ::socket(AF_INET, SOCK_STREAM, IPPROTO_TCP);
    if (made == INVALID_SOCKET)
        throwSystemError("socket", ::WSAGetLastError());
    makeOurs(made);
    const BOOL yes = TRUE;
    ::setsockopt(made, SOL_SOCKET, SO_REUSEADDR, reinterpret_cast<const char*>(&yes), sizeof yes);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(port);
    if (::bind(made, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
        const int error = ::WSAGetLastError();
        ::closesocket(made);
        throwSystemError("bind", error);
    }
    return static_cast<Handle>(made);
}

std::uint16_t portOf(Handle socket) {
    sockaddr_in address{};
    int length = sizeof address;
    if (::getsockname(system(socket), reinterpret_cast<sockaddr*>(&address), &length) != 0)
        throwSystemError("getsockname", ::WSAGetLastError());
    return ntohs(address.sin_port);
}

void listen(Handle socket, int backlog) {
    if (::listen(system(socket), backlog) != 0)
        throwSystemError("listen", ::WSAGetLastError());
}

std::optional<Handle> accept(Handle listening) {
    const SOCKET accepted = ::accept(system(listening), nullptr, nullptr);
    if (accepted != INVALID_SOCKET) {
        makeOurs(accepted);
        return static_cast<Handle>(accepted);
    }
    const int error = ::WSAGetLastError();
    if (error == WSAEWOULDBLOCK || error == WSAECONNRESET)
        return std::nullopt;
    throwSystemError("accept", error);
}

std::optional<std::size_t> receive(Handle socket, std::uint8_t* bytes, std::size_t count) {
    return moved(::recv(system(socket), reinterpret_cast<char*>(bytes), lengthOfOne(count), 0), "read");
}

bool isAtEnd(Handle socket) noexcept {
    char next = 0;
    return ::recv(system(socket), &next, 1, MSG_PEEK) <= 0;
}

std::optional<std::size_t> send(Handle socket, const std::uint8_t* bytes, std::size_t count, Following) {
    return moved(::send(system(socket), reinterpret_cast<const char*>(bytes), lengthOfOne(count), 0),
                 "write");
}

void finishSending(Handle socket) noexcept { ::shutdown(system(socket), SD_SEND); }

void close(Handle socket) noexcept { ::closesocket(system(socket)); }

void closeWithReset(Handle socket) noexcept {
    const linger now{1, 0};
    ::setsockopt(system(socket), SOL_SOCKET, SO_LINGER, reinterpret_cast<const char*>(&now), sizeof now);
    close(socket);
}

} // namespace TAVO::simulator::peer_sockets
