#include <array>
#include <cstdlib>

#include <netdb.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

/// `tunnel HOST PORT` carries its standard input to a TCP port, and what comes from there to its standard
/// output.
namespace {

int connectTo(const char* host, const char* port) {
    addrinfo hints{};
    hints.ai_socktype = SOCK_STREAM;
    addrinfo* found = nullptr;
    if (::getaddrinfo(host, port, &hints, &found) != 0)
        return -1;
    const int connection = ::socket(found->ai_family, found->ai_socktype, found->ai_protocol);
    const int error = ::connect(connection, found->ai_addr, found->ai_addrlen);
    ::freeaddrinfo(found);
    return error == 0 ? connection : -1;
}

/// Carries what there is; false at the end.
bool carry(int from, int to) {
    std::array<char, 65536> bytes{};
    const auto got = ::read(from, bytes.data(), bytes.size());
    for (ssize_t done = 0; done < got;) {
        const auto written = ::write(to, bytes.data() + done, static_cast<std::size_t>(got - done));
        if (written <= 0)
            return false;
        done += written;
    }
    return got > 0;
}

} // namespace

int main(int argc, char** argv) {
    const int connection = argc == 3 ? connectTo(argv[1], argv[2]) : -1;
    if (connection < 0)
        return EXIT_FAILURE;
    std::array<pollfd, 2> ends = {{{STDIN_FILENO, POLLIN, 0}, {connection, POLLIN, 0}}};
    while (::poll(ends.data(), ends.size(), -1) > 0) {
        if (ends[0].revents != 0 && !carry(STDIN_FILENO, connection)) {
            ::shutdown(connection, SHUT_WR);
            ends[0].fd = -1;
        }
        if (ends[1].revents != 0 && !carry(connection, STDOUT_FILENO))
            return EXIT_SUCCESS;
    }
    return EXIT_FAILURE;
}
