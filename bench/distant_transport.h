#pragma once

#include <chrono>
#include <string>
#include <thread>

#include <tavo/client/wire/socket_transport.h>

namespace bench {

/// A connection on which each exchange takes a millisecond more, as through a laboratory's network.
class DistantTransport final : public TAVO::Transport {
public:
    DistantTransport(const std::string& address, int port)
        : near_(address, std::to_string(port)) {}

    void send(const TAVOX::OutputStream::Chunks& request) override {
        near_.send(request);
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    void receiveAll(std::uint8_t* buffer, std::uint64_t length) override { near_.receiveAll(buffer, length); }
    const std::uint8_t* receiveInPlace(std::uint64_t length) override { return near_.receiveInPlace(length); }
    std::span<const std::uint8_t> held() const noexcept override { return near_.held(); }

private:
    TAVO::SocketTransport near_;
};

} // namespace bench
