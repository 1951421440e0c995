#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

#include <tests/support/wire_bytes.h>

namespace support {

/// A client of a few bytes: a connection to 127.0.0.1. Every wait ends after 20 seconds with an exception.
class RawClient {
public:
    explicit RawClient(std::uint16_t port)
        : socket_(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        const timeval patience{20, 0};
        ::setsockopt(socket_, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
        ::setsockopt(socket_, SOL_SOCKET, SO_SNDTIMEO, &patience, sizeof patience);
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        address.sin_port = htons(port);
        if (::connect(socket_, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
            ::close(socket_);
            throw std::runtime_error("cannot connect");
        }
    }
    RawClient(const RawClient&) = delete;
    RawClient& operator=(const RawClient&) = delete;
    ~RawClient() { ::close(socket_); }

    /// Sends what the peer takes; false when it has closed.
    bool send(const Bytes& bytes) {
        for (std::size_t done = 0; done < bytes.size();) {
            const auto sent = ::send(socket_, bytes.data() + done, bytes.size() - done, MSG_NOSIGNAL);
            if (sent <= 0)
                return false;
            done += static_cast<std::size_t>(sent);
        }
        return true;
    }

    /// What one receive brings; empty at the end of the connection.
    Bytes receive() {
        Bytes bytes(1 << 20);
        const auto got = ::recv(socket_, bytes.data(), bytes.size(), 0);
        if (got < 0)
            throw std::runtime_error(errno == ECONNRESET ? "reset" : "nothing to receive");
        bytes.resize(static_cast<std::size_t>(got));
        return bytes;
    }

    Bytes receive(std::size_t count) {
        Bytes bytes;
        while (bytes.size() < count) {
            const auto piece = receive();
            if (piece.empty())
                break;
            bytes.insert(bytes.end(), piece.begin(), piece.end());
        }
        return bytes;
    }

    Bytes receiveToEnd() { return receive(SIZE_MAX); }

    /// Whether there is anything to receive now.
    bool hasInput() {
        std::uint8_t byte = 0;
        return ::recv(socket_, &byte, 1, MSG_PEEK | MSG_DONTWAIT) >= 0;
    }

private:
    int socket_;
};

/// One call of a request.
inline Bytes callBytes(std::uint32_t instanceId, std::uint32_t methodId, const Bytes& parameters = {}) {
    return joined({u32(instanceId), u32(methodId), block(parameters)});
}

inline Bytes requestBytes(std::uint32_t lockId, std::initializer_list<Bytes> calls) {
    return joined({u32(lockId), u32(static_cast<std::uint32_t>(calls.size())), joined(calls)});
}

} // namespace support
