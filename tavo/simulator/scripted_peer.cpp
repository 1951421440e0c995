#include <tavo/simulator/scripted_peer.h>

#include <algorithm>
#include <array>
#include <stdexcept>
#include <utility>

#include <tavo/client/wire/byte_order.h>
#include <tavo/simulator/internal/peer_socket.h>
#include <tavo/simulator/internal/thread_without_signals.h>

namespace TAVO::simulator {

namespace {

using peer_sockets::Event;
using peer_sockets::Following;
using peer_sockets::noSocket;
using Bytes = std::vector<std::uint8_t>;
using Moment = std::chrono::steady_clock::time_point;

Moment after(std::chrono::milliseconds patience) { return std::chrono::steady_clock::now() + patience; }

void awaitEvent(peer_sockets::Handle socket, Event event, Moment deadline, const char* what) {
    while (true) {
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
            deadline - std::chrono::steady_clock::now());
        if (left.count() <= 0)
            throw std::runtime_error(std::string("waited too long to ") + what);
        if (peer_sockets::waitFor(socket, event, left))
            return;
    }
}

void closeSocket(peer_sockets::Handle& socket) {
    if (socket != noSocket)
        peer_sockets::close(std::exchange(socket, noSocket));
}

std::size_t receive(peer_sockets::Handle socket, std::uint8_t* bytes, std::size_t count, Moment deadline,
                    const char* what) {
    while (true) {
        awaitEvent(socket, Event::input, deadline, what);
        if (const auto got = peer_sockets::receive(socket, bytes, count))
            return *got;
    }
}

void append(Bytes& bytes, const Bytes& more) { bytes.insert(bytes.end(), more.begin(), more.end()); }

} // namespace

PeerConnection::PeerConnection(std::intptr_t socket, std::chrono::milliseconds patience)
    : socket_(socket)
    , patience_(patience) {}

PeerConnection::PeerConnection(PeerConnection&& other) noexcept
    : socket_(std::exchange(other.socket_, noSocket))
    , patience_(other.patience_) {}

PeerConnection& PeerConnection::operator=(PeerConnection&& other) noexcept {
    std::swap(socket_, other.socket_);
    std::swap(patience_, other.patience_);
    return *this;
}

PeerConnection::~PeerConnection() { close(); }

Bytes PeerConnection::read(std::size_t count) {
    Bytes bytes;
    const auto deadline = after(patience_);
    std::array<std::uint8_t, 65536> piece; // NOLINT(cppcoreguidelines-pro-type-member-init)
    while (bytes.size() < count) {
        const auto got =
            receive(socket_, piece.data(), std::min(piece.size(), count - bytes.size()), deadline, "read");
        if (got == 0)
            throw std::runtime_error("the client closed the connection after " +
                                     std::to_string(bytes.size()) + " of " + std::to_string(count) +
                                     " bytes");
        bytes.insert(bytes.end(), piece.begin(), piece.begin() + static_cast<std::ptrdiff_t>(got));
    }
    return bytes;
}

Bytes PeerConnection::readRequest() {
    constexpr std::size_t headSize = 8, countOffset = 4, callHeadSize = 12, sizeOffset = 8;
    auto request = read(headSize);
    auto callsLeft = TAVOX::loadBigEndian<std::uint32_t>(request.data() + countOffset);
    for (; callsLeft > 0; --callsLeft) {
        const auto head = read(callHeadSize);
        append(request, head);
        append(request, read(TAVOX::loadBigEndian<std::uint32_t>(head.data() + sizeOffset)));
    }
    return request;
}

Bytes PeerConnection::readToEnd() {
    Bytes bytes;
    const auto deadline = after(patience_);
    std::array<std::uint8_t, 65536> piece; // NOLINT(cppcoreguidelines-pro-type-member-init)
    while (const auto got = receive(socket_, piece.data(), piece.size(), deadline, "see the client close"))
        bytes.insert(bytes.end(), piece.begin(), piece.begin() + static_cast<std::ptrdiff_t>(got));
    return bytes;
}

void PeerConnection::send(const Bytes& bytes, bool endFollows) {
    const auto deadline = after(patience_);
    for (std::size_t done = 0; done < bytes.size();) {
        awaitEvent(socket_, Event::room, deadline, "write");
        done += peer_sockets::send(socket_, bytes.data() + done, bytes.size() - done,
                                   endFollows ? Following::end : Following::nothing)
                    .value_or(0);
    }
}

void PeerConnection::write(const Bytes& bytes) { send(bytes, false); }

void PeerConnection::finishWith(const Bytes& bytes) {
    // The system holds back only a few bytes.
    constexpr std::ptrdiff_t mostKeptBack = 1024;
    const auto tail = bytes.end() - std::min<std::ptrdiff_t>(mostKeptBack, bytes.end() - bytes.begin());
    write({bytes.begin(), tail});
    send({tail, bytes.end()}, true);
    finishWriting();
}

// NOLINTNEXTLINE(readability-make-member-function-const): it changes the connection
void PeerConnection::finishWriting() { peer_sockets::finishSending(socket_); }

void PeerConnection::close() { closeSocket(socket_); }

void PeerConnection::reset() {
    if (isOpen())
        peer_sockets::closeWithReset(std::exchange(socket_, noSocket));
}

bool PeerConnection::hasInput(std::chrono::milliseconds wait) const {
    return peer_sockets::waitFor(socket_, Event::input, wait);
}

bool PeerConnection::atEnd() const { return peer_sockets::isAtEnd(socket_); }

PeerListener::PeerListener(int backlog, std::chrono::milliseconds patience)
    : patience_(patience)
    , reservation_(peer_sockets::makeBound(0)) {
    try {
        port_ = peer_sockets::portOf(reservation_);
        listen(backlog);
    } catch (const std::exception&) {
        closeSocket(reservation_);
        closeSocket(listening_);
        throw;
    }
}

PeerListener::~PeerListener() {
    closeSocket(listening_);
    closeSocket(reservation_);
}

PeerConnection PeerListener::accept() {
    const auto deadline = after(patience_);
    while (true) {
        awaitEvent(listening_, Event::input, deadline, "accept");
        if (const auto accepted = peer_sockets::accept(listening_))
            return PeerConnection(*accepted, patience_);
    }
}

bool PeerListener::hasWaitingClient() const {
    return peer_sockets::waitFor(listening_, Event::input, std::chrono::milliseconds(0));
}

void PeerListener::stop() { closeSocket(listening_); }

void PeerListener::listen(int backlog) {
    closeSocket(listening_);
    listening_ = peer_sockets::makeBound(port_);
    peer_sockets::listen(listening_, backlog);
}

ScriptedPeer::ScriptedPeer(Script script, int backlog, std::chrono::milliseconds patience)
    : listener_(backlog, patience)
    , thread_(threadWithoutSignals([this, script = std::move(script)] {
        try {
            script(listener_);
        } catch (const std::exception&) {
            failure_ = std::current_exception();
        }
        listener_.stop();
    })) {}

ScriptedPeer::~ScriptedPeer() {
    if (thread_.joinable())
        thread_.join();
}

void ScriptedPeer::join() {
    if (thread_.joinable())
        thread_.join();
    if (failure_)
        std::rethrow_exception(std::exchange(failure_, nullptr));
}

} // namespace TAVO::simulator
