#pragma once

#include <cstdint>
#include <string>

#include <sys/socket.h>

namespace TAVO::python {

/// Where a server of this process listens, to find its sockets in a process that was forked off.
class ListeningAddress {
public:
    ListeningAddress() = default;
    /// @param host a name or an address, resolved as the server does.
    ListeningAddress(const std::string& host, std::uint16_t port);

    /// Closes the sockets of this process that listen there, or were accepted there.
    void closeSockets() const noexcept;

private:
    bool isAddressOf(int socket) const noexcept;

    sockaddr_storage address_{};
};

} // namespace TAVO::python
