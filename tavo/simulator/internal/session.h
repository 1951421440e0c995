#pragma once

#include <array>
#include <cstdint>
#include <memory>

#include <asio/ip/tcp.hpp>
#include <asio/steady_timer.hpp>

#include <tavo/simulator/internal/request_assembler.h>
#include <tavo/simulator/internal/server.h>

namespace TAVO::simulator {

/// One connection: reads a request, answers it with one send, reads the next.
class Session : public std::enable_shared_from_this<Session> {
public:
    Session(Server& server, asio::ip::tcp::socket socket, std::uint64_t number);

    void start();
    void close();

private:
    void read();
    void serve();
    void answer();
    void deliver();
    void write(std::size_t bytes, bool thenClose);
    void dribble(std::size_t sent, std::chrono::microseconds pause);
    void delivered();
    void reset();
    void closeGently();
    void discard();

    Server& server_;
    asio::ip::tcp::socket socket_;
    asio::steady_timer timer_;
    std::uint64_t number_;
    std::array<std::uint8_t, 65536> received_;
    RequestAssembler assembler_;
    Response response_;
    bool closed_ = false;
};

} // namespace TAVO::simulator
