#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>
#include <system_error>
#include <utility>

#include <asio/generic/stream_protocol.hpp>
#include <asio/io_context.hpp>
#include <asio/ip/tcp.hpp>
#include <asio/steady_timer.hpp>

#include <tavo/server/socket_options.h>

namespace TAVO::server {

/// A connection over any kind of stream socket.
using Socket = asio::generic::stream_protocol::socket;

/// Begins to listen. `port` may be 0: the system chooses.
/// @throws std::runtime_error that names host and port.
asio::ip::tcp::acceptor listenOn(asio::io_context& context, const std::string& host, std::uint16_t port);

/// Accepts clients from construction until stop(). Must outlive the run of its context. A shortage of
/// descriptors ends it no more than a client that has gone again.
template <class Protocol>
class Listener {
public:
    using Acceptor = asio::basic_socket_acceptor<Protocol>;
    using Enter = std::function<void(Socket)>;
    /// Frees a descriptor. Returns false if it cannot.
    using MakeRoom = std::function<bool()>;

    Listener(Acceptor acceptor, Enter enter, MakeRoom makeRoom)
        : acceptor_(std::move(acceptor))
        , pause_(acceptor_.get_executor())
        , enter_(std::move(enter))
        , makeRoom_(std::move(makeRoom)) {
        accept();
    }

    typename Protocol::endpoint endpoint() const { return acceptor_.local_endpoint(); }

    void stop() {
        asio::error_code ignored;
        acceptor_.close(ignored);
        pause_.cancel();
    }

private:
    void accept() {
        acceptor_.async_accept([this](const asio::error_code& failure, typename Protocol::socket socket) {
            if (!acceptor_.is_open())
                return;
            if (!failure) {
                keepFromStartedPrograms(socket.native_handle());
                enter_(Socket(std::move(socket)));
                return accept();
            }
            if (isShortage(failure) && makeRoom_())
                return accept();
            pause_.expires_after(shortagePause);
            pause_.async_wait([this](const asio::error_code&) {
                if (acceptor_.is_open())
                    accept();
            });
        });
    }

    static bool isShortage(const asio::error_code& failure) {
        return failure == asio::error::no_descriptors || failure == std::errc::too_many_files_open ||
               failure == std::errc::too_many_files_open_in_system;
    }

    // How long to wait for a connection to end if no descriptor is left for a new one.
    static constexpr std::chrono::milliseconds shortagePause{50};

    Acceptor acceptor_;
    asio::steady_timer pause_;
    Enter enter_;
    MakeRoom makeRoom_;
};

} // namespace TAVO::server
