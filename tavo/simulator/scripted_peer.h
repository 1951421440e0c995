#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include <tavo/simulator/export.h>

/// The far end of a connection, byte by byte, for tests of what a Simulator never does: a peer that speaks
/// out of turn, half a reply, a server that is not an appliance at all.
namespace TAVO::simulator {

/// How long a peer waits for its client.
inline constexpr std::chrono::seconds peerPatience{20};

/// One accepted connection, closed by its destructor. An operation that waits longer than `patience` throws
/// std::runtime_error with what it waited for. Use it from one thread at a time.
class TAVO_SIMULATOR_API PeerConnection {
public:
    /// @param socket the system's number of an accepted, non-blocking socket; this object closes it.
    explicit PeerConnection(std::intptr_t socket, std::chrono::milliseconds patience = peerPatience);
    PeerConnection(PeerConnection&& other) noexcept;
    PeerConnection& operator=(PeerConnection&& other) noexcept;
    ~PeerConnection();

    /// Reads exactly `count` bytes.
    /// @throws std::runtime_error also if the client closes first.
    std::vector<std::uint8_t> read(std::size_t count);
    /// Reads one whole request: lock id, number of calls, the calls.
    std::vector<std::uint8_t> readRequest();
    /// Reads until the client closes its end.
    std::vector<std::uint8_t> readToEnd();
    void write(const std::vector<std::uint8_t>& bytes);

    /// Ends the stream to the client; reading still works.
    void finishWriting();
    /// Sends these bytes and the end together: a client that has received the bytes also sees the end. On
    /// Windows the end may follow a moment later.
    void finishWith(const std::vector<std::uint8_t>& bytes);
    void close();
    /// Resets the connection.
    void reset();
    bool isOpen() const { return socket_ != noSocket; }

    /// Waits at most this long for bytes or the end of the client's stream.
    bool hasInput(std::chrono::milliseconds wait) const;
    /// Whether the input reported by hasInput() is the end.
    bool atEnd() const;

private:
    friend class PeerListener;
    static constexpr std::intptr_t noSocket = -1;

    void send(const std::vector<std::uint8_t>& bytes, bool endFollows);

    std::intptr_t socket_;
    std::chrono::milliseconds patience_;
};

/// Listens on a free port of 127.0.0.1 from construction on. Keeps the port while it does not listen. Use it
/// from one thread at a time; port() may be called from any.
///
/// Many tests need only one thread, because the system completes a connect and buffers what is sent: let the
/// client connect and send, then accept(), read and write, then let the client receive.
class TAVO_SIMULATOR_API PeerListener {
public:
    /// @throws std::runtime_error
    explicit PeerListener(int backlog = 16, std::chrono::milliseconds patience = peerPatience);
    PeerListener(const PeerListener&) = delete;
    PeerListener& operator=(const PeerListener&) = delete;
    ~PeerListener();

    std::uint16_t port() const { return port_; }
    std::string portText() const { return std::to_string(port_); }

    /// @throws std::runtime_error if no client connects in time.
    PeerConnection accept();
    /// Whether a client has connected and not been accepted yet.
    bool hasWaitingClient() const;
    /// Refuses new clients and cuts off those not accepted yet.
    void stop();
    /// Listens again, on the same port.
    void listen(int backlog = 16);

private:
    std::chrono::milliseconds patience_;
    std::intptr_t reservation_ = PeerConnection::noSocket;
    std::intptr_t listening_ = PeerConnection::noSocket;
    std::uint16_t port_ = 0;
};

/// Plays the device in its own thread, for clients that wait for an answer.
///
/// @code
/// ScriptedPeer peer([](PeerListener& listener) {
///     auto client = listener.accept();
///     client.readRequest();
///     client.write({0, 0, 0, 0, 0, 0}); // the beginning of a reply
///     client.reset();
/// });
/// connectTo(peer.port());
/// peer.join();
/// @endcode
///
/// Closes the port when the script returns or throws.
class TAVO_SIMULATOR_API ScriptedPeer {
public:
    using Script = std::function<void(PeerListener&)>;

    explicit ScriptedPeer(Script script, int backlog = 16, std::chrono::milliseconds patience = peerPatience);
    ScriptedPeer(const ScriptedPeer&) = delete;
    ScriptedPeer& operator=(const ScriptedPeer&) = delete;
    /// Waits for the script's end.
    ~ScriptedPeer();

    std::uint16_t port() const { return listener_.port(); }
    std::string portText() const { return listener_.portText(); }

    /// Waits for the script's end.
    /// @throws what the script threw, the first time.
    void join();

private:
    PeerListener listener_;
    std::exception_ptr failure_;
    std::thread thread_;
};

} // namespace TAVO::simulator
