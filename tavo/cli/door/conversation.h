#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>

namespace TAVO::cli {

/// What a protocol says to one client. Knows no sockets.
class Conversation {
public:
    using Milliseconds = std::chrono::milliseconds;
    /// Where answers go. Once the client has gone for good it throws, to end what receive() or pause() does,
    /// also if it is given nothing; never in end().
    using Send = std::function<void(std::span<const std::uint8_t>)>;

    virtual ~Conversation() = default;
    /// Takes what came from the client, cut anywhere.
    /// @return false when the conversation is over.
    virtual bool receive(std::span<const std::uint8_t> bytes) = 0;
    /// Nothing more has come, for that long.
    /// @return when to be told again, counted from what came last; empty: not until more has come.
    virtual std::optional<Milliseconds> pause(Milliseconds silence) = 0;
    /// How long a client that sends no more is still told things: pause() goes on for that long.
    virtual Milliseconds farewell() const { return Milliseconds(0); }
    /// The client has gone, or has been sent away.
    virtual void end() = 0;
};

} // namespace TAVO::cli
