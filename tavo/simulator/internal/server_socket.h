#pragma once

#include <asio/ip/tcp.hpp>

namespace TAVO::simulator {

/// Keeps a socket from the programs that this process starts: in them, a port would stay open for good.
void keepFromStartedPrograms(asio::ip::tcp::socket::native_handle_type socket);

/// A port that was served can be served again at once, but never by two at a time.
void takePortForOne(asio::ip::tcp::acceptor& acceptor);

} // namespace TAVO::simulator
