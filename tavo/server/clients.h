#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>

namespace TAVO::server {

/// A client's connection, as far as the bounds of a server concern it.
class Client {
public:
    using Time = std::chrono::steady_clock::time_point;

    virtual ~Client() = default;
    /// Closes the connection and leaves the Clients.
    virtual void close() = 0;
    /// When bytes last moved.
    virtual Time active() const = 0;
    /// Bytes of requests and answers kept for the client.
    virtual std::size_t heldBytes() const = 0;
    /// Whether the bounds must not close it, however long it has been idle.
    virtual bool isSpared() const = 0;
};

/// Bounds on what a server keeps for its clients.
struct ClientBounds {
    std::size_t connections = 0;
    std::size_t heldBytes = 0;
};

/// The open connections of a server. One thread at a time.
class Clients {
public:
    explicit Clients(const ClientBounds& bounds)
        : bounds_(bounds) {}

    /// Makes room for one more. Returns false if there is none.
    bool makeRoom();
    void add(std::uint64_t number, std::shared_ptr<Client> client);
    /// Returns whether it was there.
    bool remove(std::uint64_t number) { return clients_.erase(number) > 0; }
    std::size_t count() const { return clients_.size(); }
    void closeAll() { closeAllBut(nullptr); }
    void closeAllBut(const Client* kept);
    /// Closes the longest idle connection. Returns false if none can be closed.
    bool closeIdlest();

    /// Notes that a client holds `now` bytes in place of `before`.
    void changeHeld(std::size_t before, std::size_t now) { heldBytes_ += now - before; }
    /// Closes connections until the held bytes are within the bound, `active` last.
    void boundHeld(Client& active);

private:
    template <class Condition>
    bool closeIdlestThat(Condition fits);

    ClientBounds bounds_;
    std::map<std::uint64_t, std::shared_ptr<Client>> clients_;
    std::size_t heldBytes_ = 0;
};

} // namespace TAVO::server
