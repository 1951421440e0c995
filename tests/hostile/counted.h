#pragma once

#include <cstddef>
#include <ostream>
#include <span>
#include <string_view>

namespace hostile {

/// A place where a conversation is disturbed, and what there is at it, counted by hand.
struct CountedPlace {
    /// The number of the conversation.
    std::size_t conversation;
    std::size_t place;
    /// The exchange, for the name of a test.
    std::string_view label;
    /// Bytes of the reply.
    std::size_t size;
    /// How often it is cut.
    std::size_t cuts;
    /// How many wrong replies there are.
    std::size_t wrong;

    friend std::ostream& operator<<(std::ostream& out, const CountedPlace& counted) {
        return out << "place " << counted.place << " of conversation " << counted.conversation << ", "
                   << counted.label;
    }
};

/// All places where conversations are disturbed: those that no earlier conversation has too. What stands here
/// is known without making a conversation.
std::span<const CountedPlace> countedPlaces();

} // namespace hostile
