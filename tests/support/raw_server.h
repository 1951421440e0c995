#pragma once

#include <array>
#include <cerrno>
#include <chrono>
#include <cstdint>
#include <cstring>
#include <functional>
#include <future>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <tests/support/hang_guard.h>

/// The device's end of a connection, byte by byte, on an ephemeral port of 127.0.0.1.
///
/// Much can be tested in one thread, because the system completes a connect and stores what is sent before
/// the peer looks: let the client connect and send, then accept(), read() and write(), then let the client
/// receive. Where the client would wait for an answer, ScriptedServer plays the device in a thread of its
/// own. Every wait here ends after `patience` with an exception.
namespace support {

using Bytes = std::vector<std::uint8_t>;

inline constexpr std::chrono::seconds patience{20};

inline Bytes bytesOf(const std::string& text) { return {text.begin(), text.end()}; }

/// `count` bytes that differ from their neighbours and do not repeat with a power of two.
inline Bytes pattern(std::size_t count) {
    Bytes bytes(count);
    for (std::size_t i = 0; i < count; ++i)
        bytes[i] = static_cast<std::uint8_t>(i % 251);
    return bytes;
}

/// A descriptor that closes itself.
class Descriptor {
public:
    explicit Descriptor(int number)
        : number_(number) {}
    Descriptor(Descriptor&& other) noexcept
        : number_(std::exchange(other.number_, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        std::swap(number_, other.number_);
        return *this;
    }
    ~Descriptor() { close(); }

    int number() const { return number_; }
    void close() {
        if (number_ >= 0)
            ::close(number_);
        number_ = -1;
    }

private:
    int number_;
};

[[noreturn]] inline void throwSystemError(const std::string& what) {
    throw std::runtime_error(what + ": " + std::strerror(errno));
}

class Deadline {
public:
    /// Waits for an event on a descriptor; throws when there is none until the deadline.
    void await(const Descriptor& descriptor, short events, const char* what) const {
        pollfd entry{descriptor.number(), events, 0};
        while (true) {
            const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
                end_ - std::chrono::steady_clock::now());
            if (left.count() <= 0)
                throw std::runtime_error(std::string("waited too long to ") + what);
            if (::poll(&entry, 1, static_cast<int>(left.count())) > 0)
                return;
        }
    }

private:
    std::chrono::steady_clock::time_point end_ = std::chrono::steady_clock::now() + patience;
};

/// One accepted connection. Closed by its destructor.
class RawConnection {
public:
    explicit RawConnection(int descriptor)
        : socket_(descriptor) {}

    /// Exactly `count` bytes.
    Bytes read(std::size_t count) {
        Bytes bytes(count);
        const Deadline deadline;
        for (std::size_t done = 0; done < count;) {
            deadline.await(socket_, POLLIN, "read");
            const auto got = ::recv(socket_.number(), bytes.data() + done, count - done, 0);
            if (got == 0)
                throw std::runtime_error("the client closed the connection after " + std::to_string(done) +
                                         " of " + std::to_string(count) + " bytes");
            if (got > 0)
                done += static_cast<std::size_t>(got);
            else if (errno != EAGAIN && errno != EINTR)
                throwSystemError("read");
        }
        return bytes;
    }

    /// All bytes until the client closes its end.
    Bytes readToEnd() {
        Bytes bytes;
        const Deadline deadline;
        while (true) {
            std::array<std::uint8_t, 4096> piece;
            deadline.await(socket_, POLLIN, "see the client close");
            const auto got = ::recv(socket_.number(), piece.data(), piece.size(), 0);
            if (got == 0)
                return bytes;
            if (got > 0)
                bytes.insert(bytes.end(), piece.begin(), piece.begin() + got);
            else if (errno != EAGAIN && errno != EINTR)
                throwSystemError("read to the end");
        }
    }

    void write(const Bytes& bytes) {
        const Deadline deadline;
        for (std::size_t done = 0; done < bytes.size();) {
            deadline.await(socket_, POLLOUT, "write");
            const auto sent =
                ::send(socket_.number(), bytes.data() + done, bytes.size() - done, MSG_NOSIGNAL);
            if (sent >= 0)
                done += static_cast<std::size_t>(sent);
            else if (errno != EAGAIN && errno != EINTR)
                throwSystemError("write");
        }
    }

    /// Tells the client that nothing more comes, and goes on reading.
    void finishWriting() { ::shutdown(socket_.number(), SHUT_WR); }

    void close() { socket_.close(); }
    bool isOpen() const { return socket_.number() >= 0; }

    /// Waits a little for bytes or the end of what the client sends.
    bool hasInput(std::chrono::milliseconds wait) const {
        pollfd entry{socket_.number(), POLLIN, 0};
        return ::poll(&entry, 1, static_cast<int>(wait.count())) > 0;
    }

    /// Whether, where hasInput(), that is the end.
    bool atEnd() const {
        std::uint8_t next = 0;
        return ::recv(socket_.number(), &next, 1, MSG_PEEK) <= 0;
    }

    /// Cuts the connection: the client sees it reset.
    void reset() {
        const linger now{1, 0};
        ::setsockopt(socket_.number(), SOL_SOCKET, SO_LINGER, &now, sizeof now);
        socket_.close();
    }

private:
    Descriptor socket_;
};

/// Listens from construction on. The port stays its own while it does not listen.
class RawListener {
public:
    explicit RawListener(int backlog = 16)
        : reservation_(newSocket())
        , listening_(-1) {
        bindTo(reservation_, 0);
        sockaddr_in address{};
        socklen_t length = sizeof address;
        if (::getsockname(reservation_.number(), reinterpret_cast<sockaddr*>(&address), &length) != 0)
            throwSystemError("getsockname");
        port_ = ntohs(address.sin_port);
        listen(backlog);
    }

    std::uint16_t port() const { return port_; }
    std::string portText() const { return std::to_string(port_); }

    RawConnection accept() {
        const Deadline deadline;
        while (true) {
            deadline.await(listening_, POLLIN, "accept");
            const int accepted =
                ::accept4(listening_.number(), nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC);
            if (accepted >= 0)
                return RawConnection(accepted);
            if (errno != EAGAIN && errno != EINTR && errno != ECONNABORTED)
                throwSystemError("accept");
        }
    }

    /// True when a client has connected that was not accepted yet.
    bool hasWaitingClient() const {
        pollfd entry{listening_.number(), POLLIN, 0};
        return ::poll(&entry, 1, 0) > 0;
    }

    /// From now on clients are refused, and those that were not accepted are cut.
    void stop() { listening_.close(); }

    /// Listens again, on the same port.
    void listen(int backlog = 16) {
        listening_ = newSocket();
        bindTo(listening_, port_);
        if (::listen(listening_.number(), backlog) != 0)
            throwSystemError("listen");
    }

private:
    static Descriptor newSocket() {
        Descriptor socket(::socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
        const int yes = 1;
        if (::setsockopt(socket.number(), SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes) != 0)
            throwSystemError("socket");
        return socket;
    }

    static void bindTo(const Descriptor& socket, std::uint16_t port) {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        address.sin_port = htons(port);
        if (::bind(socket.number(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0)
            throwSystemError("bind");
    }

    HangGuard guard_;
    Descriptor reservation_;
    Descriptor listening_;
    std::uint16_t port_ = 0;
};

/// Plays the device in a thread. When the script ends, by its end or by an exception, the port is closed; an
/// exception fails the test. The destructor waits for the script.
class ScriptedServer {
public:
    using Script = std::function<void(RawListener&)>;

    explicit ScriptedServer(Script script, int backlog = 16)
        : listener_(backlog)
        , thread_(threadWithoutSignals([this, script = std::move(script)] {
            try {
                script(listener_);
            } catch (const std::exception& failure) {
                ADD_FAILURE() << "server script: " << failure.what();
            }
            listener_.stop();
        })) {}
    ScriptedServer(const ScriptedServer&) = delete;
    ScriptedServer& operator=(const ScriptedServer&) = delete;
    ~ScriptedServer() { join(); }

    std::uint16_t port() const { return listener_.port(); }
    std::string portText() const { return listener_.portText(); }

    /// Waits for the script's end.
    void join() {
        if (thread_.joinable())
            thread_.join();
    }

private:
    RawListener listener_;
    std::thread thread_;
};

/// Lets one thread wait for another, once.
class Signal {
public:
    void raise() { promise_.set_value(); }
    void await() const {
        if (future_.wait_for(patience) != std::future_status::ready)
            throw std::runtime_error("waited too long for the other thread");
    }

private:
    std::promise<void> promise_;
    std::shared_future<void> future_ = promise_.get_future().share();
};

} // namespace support
