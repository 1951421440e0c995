#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>

#include <asio/steady_timer.hpp>

#include <tavo/server/request_assembler.h>
#include <tavo/simulator/internal/server.h>

namespace TAVO::simulator {

/// One connection: reads a request, answers it with one send, reads the next.
class Session final : public server::Client, public std::enable_shared_from_this<Session> {
public:
    Session(Server& server, server::Socket socket, std::uint64_t number);

    void start();
    void close() override;
    /// When bytes last moved, or will move: a delayed answer does not make the client idle.
    Time active() const override { return active_; }
    std::size_t heldBytes() const override { return heldBytes_; }
    bool isSpared() const override { return lockId_ != 0 && lockId_ == server_.handler_.lockInUse(); }

private:
    template <class Action>
    void attempt(Action action);
    void read();
    void take(std::size_t count);
    void serve();
    void proceed();
    /// Call it after every event. Returns false if it closed the connection because too much is kept.
    bool note();
    void answer();
    void deliver();
    void write(std::size_t bytes, bool thenClose);
    void dribble(std::size_t sent, std::chrono::microseconds pause);
    void delivered();
    void reset();
    void closeGently();
    void discard();

    Server& server_;
    server::Socket socket_;
    asio::steady_timer timer_;
    std::uint64_t number_;
    std::array<std::uint8_t, 65536> received_;
    server::RequestAssembler assembler_;
    std::unique_ptr<CallRunner> runner_;
    Response response_;
    Time active_ = std::chrono::steady_clock::now();
    std::size_t heldBytes_ = 0;
    /// What the client used last; 0 for none.
    std::uint32_t lockId_ = 0;
    bool closed_ = false;
};

} // namespace TAVO::simulator
