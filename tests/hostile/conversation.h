#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include <tests/hostile/layout.h>

namespace hostile {

/// One call and the form of its result: u a number, b a byte, s a block, [...] a counted list.
struct Call {
    std::string fullName;
    std::string form;
};

/// A request and the reply to it, both written by hand.
struct Exchange {
    std::string name;
    Bytes request;
    std::vector<Call> calls;
    Layout layout;
    /// The name that the client must find among the names of this reply for what it does next.
    std::string neededNext = {};

    Bytes reply() const { return bytesOf(layout); }
};

inline constexpr std::uint32_t lockId = 0x51;

/// Everything that a client and a device say to each other when a device with one serial port is opened,
/// asked three times and released.
const std::vector<Exchange>& conversation();

/// A call that is made when something went wrong, and the unlock that ends every conversation.
const Exchange& callAfterwards();

// Places in the conversation.
inline constexpr std::size_t keyPlace = 5;
inline constexpr std::size_t lockPlace = 6;
inline constexpr std::size_t rootMembersPlace = 16;
inline constexpr std::size_t lastOfOpening = 21;
inline constexpr std::size_t batchPlace = 22;
inline constexpr std::size_t faultyPlace = 23;
inline constexpr std::size_t infoPlace = 24;
inline constexpr std::size_t unlockPlace = 25;
inline constexpr std::size_t places = 26;

/// Sizes of the replies as counted by hand.
inline constexpr std::size_t replySizes[places] = {137, 30, 32, 137, 24, 40, 24, // device
                                                   51,  31, 51, 24,              // private
                                                   66,  30, 32, 66,  24, 36,     // system, rootMembers
                                                   135, 27, 32, 135, 24,         // uart
                                                   168, 58, 86, 20};             // calls, unlock

} // namespace hostile
