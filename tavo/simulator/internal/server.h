#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include <asio/io_context.hpp>
#include <asio/ip/tcp.hpp>
#include <asio/steady_timer.hpp>

#include <tavo/simulator/internal/call_runner.h>

namespace TAVO::simulator {

class Session;

/// Whoever answers the requests. Called in the server's thread.
struct RequestHandler {
    virtual ~RequestHandler() = default;
    /// A client has connected; gives the connection's number.
    virtual std::uint64_t connected() = 0;
    virtual void disconnected() = 0;
    virtual Response handle(std::uint64_t connection, const std::vector<std::uint8_t>& request) = 0;
    /// A request that is too large.
    virtual Response refuse(std::uint64_t connection) = 0;
};

/// Listens from construction to destruction and serves all connections in one thread.
class Server {
public:
    /// @throws std::runtime_error that names host and port when it cannot listen.
    Server(const std::string& host, std::uint16_t port, RequestHandler& handler);
    /// Closes all connections.
    ~Server();
    Server(const Server&) = delete;
    Server& operator=(const Server&) = delete;

    std::uint16_t port() const { return port_; }

private:
    friend class Session;

    void accept();
    void closeAll();
    void forget(std::uint64_t connection);

    RequestHandler& handler_;
    asio::io_context context_;
    asio::ip::tcp::acceptor acceptor_;
    asio::steady_timer acceptPause_;
    std::map<std::uint64_t, std::shared_ptr<Session>> sessions_;
    std::uint16_t port_ = 0;
    std::thread thread_;
};

} // namespace TAVO::simulator
