#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include <tests/hostile/conversation_peer.h>

namespace hostile {

/// A reply with sizes or counts that are wrong.
struct WrongReply {
    struct Change {
        std::size_t offset;
        std::uint32_t value;
    };

    std::string what = {};
    std::vector<Change> changes = {};

    /// What becomes of the right bytes.
    Bytes of(Bytes right) const;
};

/// Each of the chosen fields alone, and each within a result together with the size of the result.
std::vector<WrongReply> wrongReplies(const Layout& layout);

/// Sends these bytes instead of the reply, and the end.
Plan::Action sending(const Bytes& bytes);

} // namespace hostile
