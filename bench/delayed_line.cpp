#include <bench/delayed_line.h>

#include <array>
#include <cerrno>
#include <system_error>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <unistd.h>

namespace bench {

namespace {

sockaddr_in loopback(std::uint16_t port) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(port);
    return address;
}

int checked(int result, const char* what) {
    if (result < 0)
        throw std::system_error(errno, std::generic_category(), what);
    return result;
}

int makeSocket() { return checked(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0), "socket"); }

void sendAtOnce(int socket) {
    const int yes = 1;
    ::setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, &yes, sizeof yes);
}

} // namespace

DelayedLine::DelayedLine(std::uint16_t target, std::chrono::microseconds roundTrip)
    : target_(target)
    , oneWay_(roundTrip / 2)
    , port_(target) {
    if (oneWay_.count() == 0)
        return;
    listening_ = makeSocket();
    auto address = loopback(0);
    socklen_t length = sizeof address;
    checked(::bind(listening_, reinterpret_cast<const sockaddr*>(&address), length), "bind");
    checked(::listen(listening_, SOMAXCONN), "listen");
    checked(::getsockname(listening_, reinterpret_cast<sockaddr*>(&address), &length), "getsockname");
    port_ = ntohs(address.sin_port);
    acceptor_ = std::thread([this] { accept(); });
}

DelayedLine::~DelayedLine() {
    if (listening_ < 0)
        return;
    ::shutdown(listening_, SHUT_RDWR);
    acceptor_.join();
    for (const int socket : sockets_)
        ::shutdown(socket, SHUT_RDWR);
    for (auto& carrier : carriers_)
        carrier.join();
    for (const int socket : sockets_)
        ::close(socket);
    ::close(listening_);
}

int DelayedLine::keep(int socket) {
    sendAtOnce(socket);
    const std::lock_guard lock(mutex_);
    sockets_.push_back(socket);
    return socket;
}

void DelayedLine::accept() {
    for (;;) {
        const int accepted = ::accept(listening_, nullptr, nullptr);
        if (accepted < 0)
            return;
        const int near = keep(accepted);
        const int far = keep(makeSocket());
        const auto address = loopback(target_);
        checked(::connect(far, reinterpret_cast<const sockaddr*>(&address), sizeof address), "connect");
        carriers_.emplace_back([this, near, far] { carry(near, far); });
        carriers_.emplace_back([this, near, far] { carry(far, near); });
    }
}

void DelayedLine::carry(int from, int to) const {
    // The system may otherwise wake a thread 50 microseconds late.
    ::prctl(PR_SET_TIMERSLACK, 1, 0, 0, 0);
    std::array<char, 65536> piece{};
    for (;;) {
        const auto got = ::recv(from, piece.data(), piece.size(), 0);
        if (got <= 0)
            break;
        std::this_thread::sleep_for(oneWay_);
        if (::send(to, piece.data(), static_cast<std::size_t>(got), MSG_NOSIGNAL) != got)
            break;
    }
    ::shutdown(to, SHUT_WR);
}

} // namespace bench
