#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <sys/types.h>

/// The same work as the library's, done by other libraries for remote calls.
namespace bench::peers {

using Bytes = std::vector<std::uint8_t>;

/// One connection to a peer's own server. Every operation returns when its result has been read.
class Client {
public:
    Client() = default;
    Client(const Client&) = delete;
    Client& operator=(const Client&) = delete;
    virtual ~Client() = default;

    /// One call with a flag; its result is a return code and a byte. Returns the byte.
    virtual unsigned turn(bool on) = 0;
    /// So many of these calls, one after the other.
    /// @throws std::runtime_error for a wrong answer.
    virtual void turns(std::size_t count);
    /// Builds so many of these calls, makes them without waiting between them, takes every result and frees
    /// all. Returns the sum of the bytes.
    virtual unsigned calls(std::size_t count) = 0;
    /// The same work in one call whose parameter is a list, for peers: an interface made for it.
    virtual unsigned list(std::size_t count) = 0;
    /// Receives a block and holds it the way the peer gives it. Returns its length.
    virtual std::size_t download(std::size_t length) = 0;
    /// Builds a call from a block that stays the caller's, and sends it.
    virtual void upload(const Bytes& data) = 0;
    /// Whose processor time is the client's.
    virtual pid_t process() const;
};

/// Every server answers a flag that is set by 1, and serves blocks of this byte.
inline constexpr std::uint8_t served = 0x5A;

struct Peer {
    const char* name;
    /// Runs in a process of its own until it is killed. Listens on 127.0.0.1 and tells the port that it
    /// chose.
    std::function<void(const std::function<void(int port)>& tell)> serve;
    std::function<std::unique_ptr<Client>(int port)> connect;
    bool hasList = true;
};

/// The main function of a peer: measures it beside a raw client and prints a row for each piece of work.
int compare(const Peer& peer);

} // namespace bench::peers
