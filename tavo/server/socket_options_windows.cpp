#include <tavo/server/socket_options.h>

namespace TAVO::server {

void keepFromStartedPrograms(asio::ip::tcp::socket::native_handle_type socket) {
    const SOCKET handle = socket;
    ::SetHandleInformation(reinterpret_cast<HANDLE>(handle), HANDLE_FLAG_INHERIT, 0);
}

// Here the POSIX option would share the port, and reuse after closing works without it.
void takePortForOne(asio::ip::tcp::acceptor& acceptor) {
    const BOOL yes = TRUE;
    ::setsockopt(acceptor.native_handle(), SOL_SOCKET, SO_EXCLUSIVEADDRUSE,
                 reinterpret_cast<const char*>(&yes), sizeof yes);
}

} // namespace TAVO::server
