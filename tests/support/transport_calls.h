#pragma once

#include <cstddef>
#include <string>

#include <tavo/client/wire/socket_transport.h>
#include <tests/support/wire_bytes.h>

/// A transport called as the exchange calls it, and the texts of its failures.
namespace support {

inline const std::string interrupted = "Call to device interrupted.";
inline const std::string timedOut = "Call to device timed out.";

inline void send(TAVO::SocketTransport& transport, const Bytes& bytes) {
    transport.sendAll(bytes.data(), bytes.size());
}

inline void sendText(TAVO::SocketTransport& transport, const std::string& text) {
    send(transport, bytesOf(text));
}

inline Bytes receive(TAVO::Transport& transport, std::size_t count) {
    Bytes bytes(count);
    transport.receiveAll(bytes.data(), count);
    return bytes;
}

} // namespace support
