#pragma once

#include <chrono>
#include <cstdint>
#include <mutex>
#include <thread>
#include <vector>

namespace bench {

/// A TCP port of 127.0.0.1 that leads to another one, and delays what goes over it. For strict exchanges:
/// what follows a piece waits behind it. Without a delay it is that other port itself.
class DelayedLine {
public:
    DelayedLine(std::uint16_t target, std::chrono::microseconds roundTrip);
    DelayedLine(const DelayedLine&) = delete;
    DelayedLine& operator=(const DelayedLine&) = delete;
    /// Closes all connections.
    ~DelayedLine();

    std::uint16_t port() const { return port_; }

private:
    void accept();
    void carry(int from, int to) const;
    int keep(int socket);

    std::uint16_t target_;
    std::chrono::microseconds oneWay_;
    std::uint16_t port_;
    int listening_ = -1;
    std::thread acceptor_;
    std::mutex mutex_;
    std::vector<int> sockets_;
    std::vector<std::thread> carriers_;
};

} // namespace bench
