#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>

/// The sockets of the scripted peer: TCP on 127.0.0.1. Only waitFor() waits. Implemented by
/// peer_socket_posix.cpp and peer_socket_windows.cpp.
///
/// Failures throw std::runtime_error with the name of the call and the system's reason.
namespace TAVO::simulator::peer_sockets {

/// The system's socket number.
using Handle = std::intptr_t;
inline constexpr Handle noSocket = -1;

enum class Event { input, room };

/// Waits until there is input (bytes or the end) or room to send. Returns false after `wait`.
bool waitFor(Handle socket, Event event, std::chrono::milliseconds wait);

/// Makes a socket bound to `port`; 0 lets the system choose. Several sockets may share a port if at most one
/// of them listens. Child processes inherit neither these sockets nor those from accept().
Handle makeBound(std::uint16_t port);
std::uint16_t portOf(Handle socket);
void listen(Handle socket, int backlog);
/// Empty if the client has gone.
std::optional<Handle> accept(Handle listening);

/// Returns the number of bytes received, 0 at the end, empty if there are none yet.
std::optional<std::size_t> receive(Handle socket, std::uint8_t* bytes, std::size_t count);
/// Whether the next receive() would return 0 or fail.
bool isAtEnd(Handle socket) noexcept;

enum class Following { nothing, end };
/// Returns the number of bytes taken; empty if there is no room yet. Bytes to be followed by the end are held
/// back until it is sent, on systems that can.
std::optional<std::size_t> send(Handle socket, const std::uint8_t* bytes, std::size_t count,
                                Following following);
void finishSending(Handle socket) noexcept;

void close(Handle socket) noexcept;
/// Closes the socket so that the other end sees a reset.
void closeWithReset(Handle socket) noexcept;

} // namespace TAVO::simulator::peer_sockets
