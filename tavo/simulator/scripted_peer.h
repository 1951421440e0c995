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
/// out of turn, half a reply, a server that is no appliance at all.
namespace TAVO::simulator {

/// How long a peer waits for its client before it gives up.
inline constexpr std::chrono::seconds peerPatience{20};

/// One accepted connection, closed by its destructor. Every operation that waits ends after the patience with
/// std::runtime_error that names what it waited for. One thread at a time.
class TAVO_SIMULATOR_API PeerConnection {
public:
    /// @param socket an accepted socket that does not block, as the system numbers it; closed by this object.
    explicit PeerConnection(std::intptr_t socket, std::chrono::milliseconds patience = peerPatience);
    PeerConnection(PeerConnection&& other) noexcept;
    PeerConnection& operator=(PeerConnection&& other) noexcept;
    ~PeerConnection();

    /// Exactly `count` bytes.
    /// @throws std::runtime_error also when the client closes before.
    std::vector<std::uint8_t> read(std::size_t count);
    /// One whole request: lock id, number of calls, the calls.
    std::vector<std::uint8_t> readRequest();
    /// All bytes until the client closes its end.
    std::vector<std::uint8_t> readToEnd();
    void write(const std::vector<std::uint8_t>& bytes);

    /// Tells the client that nothing more comes, and goes on reading.
    void finishWriting();
    /// The same behind these bytes, in one piece: a client that has received the bytes also finds the end. On
    /// Windows, where a piece cannot wait for the end, it may find the end a moment later.
    void finishWith(const std::vector<std::uint8_t>& bytes);
    void close();
    /// Cuts the connection: the client sees it reset.
    void reset();
    bool isOpen() const { return socket_ != noSocket; }

    /// Waits this long at most for bytes or the end of what the client sends.
    bool hasInput(std::chrono::milliseconds wait) const;
    /// Whether, where hasInput(), that is the end.
    bool atEnd() const;

private:
    friend class PeerListener;
    static constexpr std::intptr_t noSocket = -1;

    void send(const std::vector<std::uint8_t>& bytes, bool endFollows);

    std::intptr_t socket_;
    std::chrono::milliseconds patience_;
};

/// Listens on a port of 127.0.0.1 of the system's choice, from construction on. The port stays its own while
/// it does not listen. One thread at a time, but port() may be asked from any.
///
/// Much can be tested in one thread, because the system completes a connect and stores what is sent before
/// the peer looks: let the client connect and send, then accept(), read and write, then let the client
/// receive.
class TAVO_SIMULATOR_API PeerListener {
public:
    /// @throws std::runtime_error
    explicit PeerListener(int backlog = 16, std::chrono::milliseconds patience = peerPatience);
    PeerListener(const PeerListener&) = delete;
    PeerListener& operator=(const PeerListener&) = delete;
    ~PeerListener();

    std::uint16_t port() const { return port_; }
    std::string portText() const { return std::to_string(port_); }

    /// @throws std::runtime_error when no client comes in time.
    PeerConnection accept();
    /// True when a client has connected that was not accepted yet.
    bool hasWaitingClient() const;
    /// From now on clients are refused, and those that were not accepted are cut.
    void stop();
    /// Listens again, on the same port.
    void listen(int backlog = 16);

private:
    std::chrono::milliseconds patience_;
    std::intptr_t reservation_ = PeerConnection::noSocket;
    std::intptr_t listening_ = PeerConnection::noSocket;
    std::uint16_t port_ = 0;
};

/// Plays the device in a thread of its own, for clients that wait for an answer.
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
/// When the script ends, by its end or by an exception, the port is closed.
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
