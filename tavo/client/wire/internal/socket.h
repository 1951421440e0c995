#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>

/// All that the library asks of the operating system's sockets: blocking TCP with the system's default
/// options. socket_posix.cpp and socket_windows.cpp implement it, each for its system; nothing else in the
/// library includes a system header.
///
/// The functions keep no state. All but awaitReady() carry on after a signal has interrupted them.
namespace TAVO::sockets {

/// A socket as the system numbers it.
using Handle = std::intptr_t;
inline constexpr Handle closedHandle = -1;

/// The system's error code of the call that just failed.
using ErrorCode = int;

/// "[ErrorCode " code ":" the system's text "]".
std::string errorText(ErrorCode code);
/// The code for a connection that the peer has reset.
ErrorCode connectionReset() noexcept;
/// The code for a socket that is not connected.
ErrorCode notConnected() noexcept;

/// What connect() reports for a port number that does not exist.
std::string noSuchPortText();

/// Starts the system's socket library unless it is running. Thread-safe. False when it does not start.
bool startUp() noexcept;

enum class ConnectStep { resolve, createSocket, connect, givenUp };

struct ConnectFailure {
    ConnectStep step;
    std::string errorText;
};

/// Connects to the first address that host and port resolve to, and tries no other. Asks `givesUp` every
/// 20 ms while the peer does not answer. After a failure `socket` is closedHandle.
std::optional<ConnectFailure> connect(const std::string& host, const std::string& port, Handle& socket,
                                      const std::function<bool()>& givesUp);

void close(Handle socket) noexcept;

/// Cuts the connection, which wakes up a send or a receive that waits in another thread. Safe in signal
/// handlers: it preserves the thread's error code.
void shutDown(Handle socket) noexcept;

/// Whether a receive would return at once: there are bytes, or the connection has ended.
bool pollReadable(Handle socket) noexcept;

enum class Readiness { toReceive, toSend };

/// Waits until a receive or a send would return at once, or would fail: true then. May return false before
/// `atMost` is over; the caller asks again.
bool awaitReady(Handle socket, Readiness readiness, std::chrono::milliseconds atMost) noexcept;

/// What one send or receive did.
struct Transfer {
    std::size_t bytes = 0; ///< how many bytes were moved; 0 received bytes mean the end of the connection
    ErrorCode error = 0;   ///< not 0 when the call failed
};

using Run = std::span<const std::uint8_t>;
/// The most runs that one send takes.
inline constexpr std::size_t maximumRuns = 64;

/// Sends up to maximumRuns runs as if they were one. May send only a part of them.
Transfer sendGathered(Handle socket, std::span<const Run> runs) noexcept;

/// The same without waiting: 0 bytes and no error when the system takes none now.
Transfer sendWithoutWaiting(Handle socket, std::span<const Run> runs) noexcept;

/// Waits for bytes and stores those that are there, at most `length`.
Transfer receiveOnce(Handle socket, std::uint8_t* buffer, std::size_t length) noexcept;

} // namespace TAVO::sockets
