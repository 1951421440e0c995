#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>

/// All that the library asks of the operating system's sockets: blocking TCP with the system's default
/// options. socket_posix.cpp and socket_windows.cpp implement it, each on its own system, and nothing else in
/// the library sees a system header.
///
/// No call keeps state of its own. Calls that a signal interrupts are resumed inside, but for awaitReady().
namespace TAVO::sockets {

/// A socket as the system numbers it.
using Handle = std::intptr_t;
inline constexpr Handle closedHandle = -1;

/// An error code of the system, as it stands right after the call that failed.
using ErrorCode = int;

/// "[ErrorCode " code ":" the system's text "]".
std::string errorText(ErrorCode code);
/// The code for a connection that the peer has cut.
ErrorCode connectionReset() noexcept;
/// The code for a socket that is not connected.
ErrorCode notConnected() noexcept;

/// As connect() reports a port that the system does not have.
std::string noSuchPortText();

/// Starts the system's socket library unless it runs already. Safe from several threads.
/// False when it cannot be started.
bool startUp() noexcept;

enum class ConnectStep { resolve, createSocket, connect, givenUp };

struct ConnectFailure {
    ConnectStep step;
    std::string errorText;
};

/// Connects to the first address that host and port resolve to, and to no other. `givesUp` is asked every
/// 20 ms while the peer does not answer. `socket` is closedHandle after a failure.
std::optional<ConnectFailure> connect(const std::string& host, const std::string& port, Handle& socket,
                                      const std::function<bool()>& givesUp);

void close(Handle socket) noexcept;

/// Ends the connection of a socket that a send or a receive may wait on in another thread, which ends that
/// wait. May be called in a signal handler; leaves the thread's error code as it is.
void shutDown(Handle socket) noexcept;

/// True when a receive would not wait: there are bytes, or the connection has ended.
bool pollReadable(Handle socket) noexcept;

enum class Readiness { toReceive, toSend };

/// Waits until a receive or a send would not wait, for so long at most and perhaps for less: whoever waits
/// asks again. True when it would not wait, or would fail.
bool awaitReady(Handle socket, Readiness readiness, std::chrono::milliseconds atMost) noexcept;

/// What one send or receive did.
struct Transfer {
    std::size_t bytes = 0; ///< how many bytes were moved; for a receive, 0 is the end of the connection
    ErrorCode error = 0;   ///< not 0 when the call failed
};

using Run = std::span<const std::uint8_t>;
/// As many runs as one send takes.
inline constexpr std::size_t maximumRuns = 64;

/// Sends the runs, at most maximumRuns of them, as if they were one, perhaps not to the end.
Transfer sendGathered(Handle socket, std::span<const Run> runs) noexcept;

/// The same without waiting: 0 bytes and no error when there is no room for any.
Transfer sendWithoutWaiting(Handle socket, std::span<const Run> runs) noexcept;

/// Waits for bytes and stores what is there, at most `length` bytes.
Transfer receiveOnce(Handle socket, std::uint8_t* buffer, std::size_t length) noexcept;

} // namespace TAVO::sockets
