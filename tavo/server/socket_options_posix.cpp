#include <tavo/server/socket_options.h>

#include <fcntl.h>

namespace TAVO::server {

void keepFromStartedPrograms(asio::ip::tcp::socket::native_handle_type socket) {
    ::fcntl(socket, F_SETFD, FD_CLOEXEC);
}

void takePortForOne(asio::ip::tcp::acceptor& acceptor) {
    acceptor.set_option(asio::socket_base::reuse_address(true));
}

} // namespace TAVO::server
