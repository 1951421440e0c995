#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include <tests/hostile/conversation.h>

namespace hostile {

/// What a client must do when one reply of the conversation is not what it should be.
struct Expectation {
    /// What converse() returns.
    std::vector<std::string> client = {};
    /// What the peer sees.
    std::vector<std::string> peer = {};
    /// For converse(); none when the client notices nothing, or only in the opening.
    std::optional<std::size_t> troubledPlace = std::nullopt;
};

/// Nothing is wrong.
Expectation undisturbed(const Conversation& conversation);

/// In place of the reply at `place` the peer sends these bytes and ends the connection.
/// @param refusal what a client is told that cannot connect, when the peer is gone from then on; empty when
///                it can be reached again.
Expectation afterBytes(const Conversation& conversation, std::size_t place, const Bytes& sent,
                       const std::string& refusal);

/// Behind the reply at `place` come this many bytes more; the connection goes on.
Expectation afterStrayBytes(const Conversation& conversation, std::size_t place, std::size_t count);

} // namespace hostile
