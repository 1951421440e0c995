#pragma once

#include <asio/ip/tcp.hpp>

namespace TAVO::server {

/// Keeps child processes from inheriting the socket: they would keep the port open.
void keepFromStartedPrograms(asio::ip::tcp::socket::native_handle_type socket);

/// Lets a port be reused at once after closing, but never by two listeners at a time.
void takePortForOne(asio::ip::tcp::acceptor& acceptor);

} // namespace TAVO::server
