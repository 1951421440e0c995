#pragma once

#include <cstddef>
#include <vector>

#include <tests/hostile/conversation.h>

namespace hostile {

/// Replies up to this size are disturbed everywhere.
inline constexpr std::size_t smallReply = 4096;

/// The fields of the layout by their number: all of a small reply, and of a large one that has few; of others
/// the first, the last, some between, and those that lie across the edges of the client's memory.
std::vector<std::size_t> chosenFields(const Layout& layout);

/// After how many bytes the reply is cut: after each number that is less than a small reply; in a large one
/// around the begin of each chosen field, all along the long fields, and around the edges of the client's
/// memory.
std::vector<std::size_t> cutPositions(const Layout& layout);

} // namespace hostile
