#pragma once

#include <cstdint>
#include <initializer_list>
#include <memory>

#include <tests/support/wire_bytes.h>

namespace support {

/// A client of a few bytes: a connection to 127.0.0.1. Every wait ends after 20 seconds with an exception.
class RawClient {
public:
    /// @throws std::runtime_error
    explicit RawClient(std::uint16_t port);
    RawClient(const RawClient&) = delete;
    RawClient& operator=(const RawClient&) = delete;
    ~RawClient();

    /// Sends what the peer takes; false when it has closed.
    bool send(const Bytes& bytes);

    /// Ends the sending side.
    void finishSending();

    /// What one receive brings; empty at the end of the connection.
    /// @throws std::runtime_error "reset" or "nothing to receive"
    Bytes receive();
    /// That many, or fewer when the connection ends before.
    Bytes receive(std::size_t count);
    Bytes receiveToEnd();

    /// Whether the next receive finds the end. A connection that the peer closes before it has accepted it,
    /// or read all of it, is reset.
    bool hasEnded();

    /// Whether there is anything to receive now.
    bool hasInput();

private:
    struct Connection;
    std::unique_ptr<Connection> connection_;
};

/// One call of a request.
inline Bytes callBytes(std::uint32_t instanceId, std::uint32_t methodId, const Bytes& parameters = {}) {
    return joined({u32(instanceId), u32(methodId), block(parameters)});
}

inline Bytes requestBytes(std::uint32_t lockId, std::initializer_list<Bytes> calls) {
    return joined({u32(lockId), u32(static_cast<std::uint32_t>(calls.size())), joined(calls)});
}

} // namespace support
