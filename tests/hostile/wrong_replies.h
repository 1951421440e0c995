#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include <tests/hostile/conversation_peer.h>

namespace hostile {

struct WrongReply {
    std::string what;
    Bytes bytes;
};

/// The replies in that place of the conversation whose sizes and counts are wrong: each alone, and each
/// within a result together with the size of the result.
std::vector<WrongReply> wrongRepliesAt(std::size_t place);

/// Sends these bytes instead of the reply, and the end.
Plan::Action sending(const Bytes& bytes);

} // namespace hostile
