#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include <asio/io_context.hpp>
#include <asio/ip/tcp.hpp>

#include <tavo/server/clients.h>
#include <tavo/server/listener.h>
#include <tavo/simulator/internal/call_runner.h>

namespace TAVO::simulator {

class Session;

/// Answers the requests. Called in the server's thread.
struct RequestHandler {
    virtual ~RequestHandler() = default;
    /// A client has connected. Returns the connection's number.
    virtual std::uint64_t connected() = 0;
    virtual void disconnected() = 0;
    /// Prepares to carry out a complete request.
    virtual std::unique_ptr<CallRunner> begin(std::uint64_t connection,
                                              std::vector<std::uint8_t> request) = 0;
    /// Carries out a piece of the request, short enough not to delay others. Returns the answer after the
    /// last piece.
    virtual std::optional<Response> proceed(CallRunner& runner) = 0;
    /// Answers a request that is too large.
    virtual Response refuse(std::uint64_t connection) = 0;
    /// The current lock id; 0 if nobody holds the lock.
    virtual std::uint32_t lockInUse() = 0;
};

/// Listens from construction to destruction. Serves all connections in one thread.
class Server {
public:
    /// @throws std::runtime_error that names host and port if it cannot listen.
    Server(const std::string& host, std::uint16_t port, const server::ClientBounds& bounds,
           RequestHandler& handler);
    /// Closes all connections.
    ~Server();
    Server(const Server&) = delete;
    Server& operator=(const Server&) = delete;

    std::uint16_t port() const { return port_; }

private:
    friend class Session;

    void enter(server::Socket socket);
    void forget(std::uint64_t connection);

    RequestHandler& handler_;
    asio::io_context context_;
    server::Clients clients_;
    server::Listener<asio::ip::tcp> listener_;
    std::uint16_t port_ = 0;
    std::thread thread_;
};

} // namespace TAVO::simulator
