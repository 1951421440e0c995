#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>

/// All that the scripted peer asks of the operating system's sockets: TCP on 127.0.0.1 that never waits but
/// in waitFor(). peer_socket_posix.cpp and peer_socket_windows.cpp implement it, each on its own system.
///
/// What fails throws std::runtime_error that names the call and the system's reason.
namespace TAVO::simulator::peer_sockets {

/// A socket as the system numbers it.
using Handle = std::intptr_t;
inline constexpr Handle noSocket = -1;

enum class Event { input, room };

/// Waits this long at most for bytes or the end, or until there is room to send; false when the time is over.
bool waitFor(Handle socket, Event event, std::chrono::milliseconds wait);

/// A socket with that port, or with one of the system's choice for 0; several may share one, as long as no
/// more than one of them listens. Programs that this process starts do not get it, nor those of accept().
Handle makeBound(std::uint16_t port);
std::uint16_t portOf(Handle socket);
void listen(Handle socket, int backlog);
/// Nothing when there is no client any more.
std::optional<Handle> accept(Handle listening);

/// How many bytes were received, 0 at the end; nothing when there are none yet.
std::optional<std::size_t> receive(Handle socket, std::uint8_t* bytes, std::size_t count);
/// Whether the next receive() would find the end, or fail.
bool isAtEnd(Handle socket) noexcept;

enum class Following { nothing, end };
/// How many bytes were taken; nothing when there is no room yet. What an end follows is held back until it
/// comes, on systems that can.
std::optional<std::size_t> send(Handle socket, const std::uint8_t* bytes, std::size_t count,
                                Following following);
void finishSending(Handle socket) noexcept;

void close(Handle socket) noexcept;
/// Closes it such that the other end sees a reset.
void closeWithReset(Handle socket) noexcept;

} // namespace TAVO::simulator::peer_sockets
