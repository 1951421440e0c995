#pragma once

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <system_error>
#include <utility>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

/// Plain blocking sockets, to compare the library with.
namespace bench {

inline long checked(long outcome, const char* what) {
    if (outcome < 0)
        throw std::system_error(errno, std::generic_category(), what);
    return outcome;
}

class Descriptor {
public:
    explicit Descriptor(long number)
        : number_(static_cast<int>(number)) {}
    Descriptor(Descriptor&& other) noexcept
        : number_(std::exchange(other.number_, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        std::swap(number_, other.number_);
        return *this;
    }
    ~Descriptor() {
        if (number_ >= 0)
            ::close(number_);
    }
    int number() const { return number_; }

private:
    int number_;
};

inline sockaddr_in socketAddress(const std::string& address, int port) {
    sockaddr_in result{};
    result.sin_family = AF_INET;
    result.sin_port = htons(static_cast<std::uint16_t>(port));
    if (::inet_pton(AF_INET, address.c_str(), &result.sin_addr) != 1)
        throw std::system_error(EINVAL, std::generic_category(), address);
    return result;
}

inline void sendAll(int socket, std::span<const std::uint8_t> bytes) {
    while (!bytes.empty()) {
        const auto sent = checked(::send(socket, bytes.data(), bytes.size(), MSG_NOSIGNAL), "send");
        bytes = bytes.subspan(static_cast<std::size_t>(sent));
    }
}

/// A client that knows beforehand what it sends and how much it receives.
class RawClient {
public:
    RawClient(const std::string& address, int port)
        : socket_(checked(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, IPPROTO_TCP), "socket")) {
        const auto peer = socketAddress(address, port);
        checked(::connect(socket_.number(), reinterpret_cast<const sockaddr*>(&peer), sizeof peer),
                "connect");
    }

    /// Sends the request and fills `reply`.
    void exchange(std::span<const std::uint8_t> request, std::span<std::uint8_t> reply) {
        sendAll(socket_.number(), request);
        while (!reply.empty()) {
            const auto received = checked(::recv(socket_.number(), reply.data(), reply.size(), 0), "recv");
            if (received == 0)
                throw std::system_error(ECONNRESET, std::generic_category(), "recv");
            reply = reply.subspan(static_cast<std::size_t>(received));
        }
    }

private:
    Descriptor socket_;
};

} // namespace bench
