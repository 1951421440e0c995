#include <tavo/simulator/internal/server.h>

#include <utility>

#include <asio/post.hpp>

#include <tavo/simulator/internal/session.h>
#include <tavo/simulator/internal/thread_without_signals.h>

namespace TAVO::simulator {

Server::Server(const std::string& host, std::uint16_t port, const server::ClientBounds& bounds,
               RequestHandler& handler)
    : handler_(handler)
    , clients_(bounds)
    , listener_(
          server::listenOn(context_, host, port), [this](server::Socket socket) { enter(std::move(socket)); },
          [this] { return clients_.closeIdlest(); })
    , port_(listener_.endpoint().port())
    , thread_(threadWithoutSignals([this] { context_.run(); })) {}

Server::~Server() {
    asio::post(context_, [this] {
        listener_.stop();
        clients_.closeAll();
    });
    thread_.join();
}

void Server::enter(server::Socket socket) {
    if (!clients_.makeRoom())
        return;
    const auto number = handler_.connected();
    const auto session = std::make_shared<Session>(*this, std::move(socket), number);
    clients_.add(number, session);
    session->start();
}

void Server::forget(std::uint64_t connection) {
    if (clients_.remove(connection))
        handler_.disconnected();
}

} // namespace TAVO::simulator
