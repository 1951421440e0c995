#include "inherited_sockets.h"

#include <cstdlib>
#include <cstring>
#include <vector>

#include <dirent.h>
#include <netdb.h>
#include <netinet/in.h>
#include <unistd.h>

namespace TAVO::python {

namespace {

const auto& asIpv4(const sockaddr_storage& address) { return reinterpret_cast<const sockaddr_in&>(address); }
const auto& asIpv6(const sockaddr_storage& address) { return reinterpret_cast<const sockaddr_in6&>(address); }

/// Whether a socket that is bound to `bound` may belong to a server at `address`.
bool isServedAt(const sockaddr_storage& address, const sockaddr_storage& bound) noexcept {
    if (bound.ss_family != address.ss_family)
        return false;
    if (address.ss_family == AF_INET) {
        const auto host = asIpv4(address).sin_addr.s_addr;
        return asIpv4(bound).sin_port == asIpv4(address).sin_port &&
               (host == htonl(INADDR_ANY) || asIpv4(bound).sin_addr.s_addr == host);
    }
    const auto& host = asIpv6(address).sin6_addr;
    return address.ss_family == AF_INET6 && asIpv6(bound).sin6_port == asIpv6(address).sin6_port &&
           (IN6_IS_ADDR_UNSPECIFIED(&host) || std::memcmp(&asIpv6(bound).sin6_addr, &host, sizeof host) == 0);
}

std::vector<int> openDescriptors() {
    std::vector<int> all;
    auto* folder = ::opendir("/dev/fd");
    if (!folder)
        return all;
    while (const auto* entry = ::readdir(folder))
        if (entry->d_name[0] != '.')
            all.push_back(std::atoi(entry->d_name));
    ::closedir(folder);
    return all;
}

} // namespace

ListeningAddress::ListeningAddress(const std::string& host, std::uint16_t port) {
    addrinfo wish{};
    wish.ai_flags = AI_PASSIVE;
    wish.ai_socktype = SOCK_STREAM;
    addrinfo* found = nullptr;
    if (::getaddrinfo(host.c_str(), std::to_string(port).c_str(), &wish, &found) != 0)
        return;
    std::memcpy(&address_, found->ai_addr, found->ai_addrlen);
    ::freeaddrinfo(found);
}

void ListeningAddress::closeSockets() const noexcept {
    if (address_.ss_family == AF_UNSPEC)
        return;
    for (const auto descriptor : openDescriptors())
        if (isAddressOf(descriptor))
            ::close(descriptor);
}

bool ListeningAddress::isAddressOf(int socket) const noexcept {
    int kind = 0;
    socklen_t length = sizeof kind;
    if (::getsockopt(socket, SOL_SOCKET, SO_TYPE, &kind, &length) != 0 || kind != SOCK_STREAM)
        return false;
    sockaddr_storage bound{};
    length = sizeof bound;
    return ::getsockname(socket, reinterpret_cast<sockaddr*>(&bound), &length) == 0 &&
           isServedAt(address_, bound);
}

} // namespace TAVO::python
