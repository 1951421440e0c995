#include <tavo/simulator/internal/server.h>

#include <stdexcept>
#include <utility>

#include <asio/post.hpp>

#include <tavo/simulator/internal/server_socket.h>
#include <tavo/simulator/internal/session.h>
#include <tavo/simulator/internal/thread_without_signals.h>

namespace TAVO::simulator {

namespace {

// How long to wait for a connection to end if no descriptor is left for a new one.
constexpr std::chrono::milliseconds shortagePause{50};

bool isShortage(const asio::error_code& failure) {
    return failure == asio::error::no_descriptors || failure == std::errc::too_many_files_open ||
           failure == std::errc::too_many_files_open_in_system;
}

} // namespace

Server::Server(const std::string& host, std::uint16_t port, const ServerLimits& limits,
               RequestHandler& handler)
    : limits_(limits)
    , handler_(handler)
    , acceptor_(context_)
    , acceptPause_(context_) {
    try {
        asio::ip::tcp::resolver resolver(context_);
        const auto found = resolver.resolve(host, std::to_string(port), asio::ip::tcp::resolver::passive);
        const auto endpoint = found.begin()->endpoint();
        acceptor_.open(endpoint.protocol());
        keepFromStartedPrograms(acceptor_.native_handle());
        takePortForOne(acceptor_);
        acceptor_.bind(endpoint);
        acceptor_.listen();
        port_ = acceptor_.local_endpoint().port();
    } catch (const std::system_error& failure) {
        throw std::runtime_error("Cannot listen on " + host + " port " + std::to_string(port) + ": " +
                                 failure.code().message());
    }
    accept();
    thread_ = threadWithoutSignals([this] { context_.run(); });
}

Server::~Server() {
    asio::post(context_, [this] {
        asio::error_code ignored;
        acceptor_.close(ignored);
        acceptPause_.cancel();
        closeAll();
    });
    thread_.join();
}

void Server::accept() {
    acceptor_.async_accept([this](const asio::error_code& failure, asio::ip::tcp::socket socket) {
        if (!acceptor_.is_open())
            return;
        if (!failure) {
            enter(std::move(socket));
            return accept();
        }
        if (isShortage(failure) && closeIdlest())
            return accept();
        acceptPause_.expires_after(shortagePause);
        acceptPause_.async_wait([this](const asio::error_code&) {
            if (acceptor_.is_open())
                accept();
        });
    });
}

void Server::enter(asio::ip::tcp::socket socket) {
    if (sessions_.size() >= limits_.connections && !closeIdlest())
        return;
    keepFromStartedPrograms(socket.native_handle());
    const auto number = handler_.connected();
    const auto session = std::make_shared<Session>(*this, std::move(socket), number);
    sessions_.emplace(number, session);
    session->start();
}

template <class Condition>
bool Server::closeIdlest(Condition asked) {
    const auto lock = handler_.lockInUse();
    std::shared_ptr<Session> idlest;
    for (const auto& [number, session] : sessions_) {
        const bool holdsLock = lock != 0 && session->lockId() == lock;
        if (!holdsLock && asked(*session) && (!idlest || session->active() < idlest->active()))
            idlest = session;
    }
    if (idlest)
        idlest->close();
    return idlest != nullptr;
}

bool Server::closeIdlest() {
    return closeIdlest([](const Session&) { return true; });
}

void Server::boundHeld(Session& active) {
    const auto isOther = [&](const Session& session) {
        return &session != &active && session.heldBytes() > 0;
    };
    while (heldBytes_ > limits_.heldBytes && closeIdlest(isOther))
        ;
    if (heldBytes_ > limits_.heldBytes)
        active.close();
}

void Server::closeAll() {
    const auto sessions = sessions_;
    for (const auto& [number, session] : sessions)
        session->close();
}

void Server::forget(std::uint64_t connection) {
    if (sessions_.erase(connection) > 0)
        handler_.disconnected();
}

} // namespace TAVO::simulator
