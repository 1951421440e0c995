#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include <tests/hostile/layout.h>

namespace hostile {

/// One call and the form of its result: u a number, l a long number, b a byte, f a flag, s a block, [...] a
/// counted list.
struct Call {
    std::string fullName;
    std::string form;
    /// How many bytes a "recv" asks for.
    std::int32_t count = 0;
};

/// What the client does when a list that should name objects names none.
struct WithoutNames {
    enum class Then { askOn, endOpening, fail } then = Then::askOn;
    std::string failure = {};
};

/// A request and the reply to it, both written by hand.
struct Exchange {
    Exchange(std::string itsName, Bytes itsRequest, std::vector<Call> itsCalls, Layout itsLayout)
        : name(std::move(itsName))
        , request(std::move(itsRequest))
        , calls(std::move(itsCalls))
        , layout(std::move(itsLayout))
        , reply(bytesOf(layout)) {}

    std::string name;
    Bytes request;
    std::vector<Call> calls;
    Layout layout;
    /// The bytes of the layout.
    Bytes reply;
    /// The name that the client must find among the names of this reply for what it does next.
    std::string neededNext = {};
    WithoutNames withoutNames = {};
};

inline constexpr std::uint32_t lockId = 0x51;

/// Everything that a client and a device say to each other when a device is opened, asked some calls and
/// released.
struct Conversation {
    Conversation(std::string itsName, std::vector<Exchange> itsExchanges);

    std::size_t placeOf(const std::string& exchangeName) const;
    std::size_t places() const { return exchanges.size(); }
    std::size_t unlockPlace() const { return places() - 1; }
    const Exchange& operator[](std::size_t place) const { return exchanges[place]; }

    std::string name;
    std::vector<Exchange> exchanges;
    std::size_t keyPlace;
    std::size_t lockPlace;
    std::size_t rootMembersPlace;
    std::size_t lastOfOpening;
    /// What one client may hold at once.
    std::size_t mostMemory;
};

namespace serial {
/// A device with one serial port, asked three times. Nothing is nested, most lists are empty.
Conversation make();
} // namespace serial

namespace bench {
/// A device with objects below objects below objects, and calls whose results hold texts, lists and lists of
/// lists.
Conversation make();
} // namespace bench

/// Devices with a result above 64 KiB, one for each kind of field that such a result may hold, a batch of
/// them, and one that sends them while it is opened.
namespace large {
Conversation makeText();
Conversation makeBytes();
Conversation makeNumbers();
Conversation makeRecords();
Conversation makeNested();
Conversation makeBatch();
Conversation makeOpening();
} // namespace large

inline constexpr std::array makersOfConversations{serial::make,      bench::make,        large::makeText,
                                                  large::makeBytes,  large::makeNumbers, large::makeRecords,
                                                  large::makeNested, large::makeBatch,   large::makeOpening};

/// The conversation of that number, made when it is first asked for. One thread.
const Conversation& conversation(std::size_t number);

/// A call that is made when something went wrong, the same for all.
const Exchange& callAfterwards();

/// The question for the key before an unlock over another connection than the one whose key is known.
const Exchange& keyAfterwards();

} // namespace hostile
