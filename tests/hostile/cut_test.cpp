#include <algorithm>
#include <chrono>
#include <thread>

#include <tests/hostile/hostile_test.h>
#include <tests/hostile/positions.h>

namespace hostile {
namespace {

using support::RawConnection;

constexpr std::chrono::milliseconds stall{2};

// A connection costs many times more in Wine: there one position in so many is taken, other ones in the next
// place.
#ifdef _WIN32
constexpr std::size_t stride = 6;
#else
constexpr std::size_t stride = 1;
#endif

Bytes firstOf(const Bytes& bytes, std::size_t count) {
    return {bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(count)};
}

class Cut : public HostilePlace {
protected:
    /// The peer ends the connection in that way after each number of bytes at which this reply is cut.
    template <class Ending>
    void cutEverywhere(const std::string& how, Ending ending) {
        const auto positions = cutPositions(exchange.layout);
        const auto first = GetParam().place % stride;
        for (auto index = first; index < positions.size(); index += stride) {
            const auto count = positions[index];
            const auto sent = firstOf(exchange.reply, count);
            const auto action = [&](RawConnection& connection, const Exchange&) {
                connection.readRequest();
                ending(connection, sent);
            };
            expectAfterBytes("byte " + std::to_string(count) + ", " + how, plan(action), sent);
        }
        expectCases((GetParam().cuts - first + stride - 1) / stride);
    }
};

TEST_F(HostileTest, ConversationsAreOrdinaryWhenNothingDisturbsThem) {
    for (std::size_t number = 0; number < makersOfConversations.size(); ++number)
        expectCase(conversation(number), "undisturbed", {}, undisturbed(conversation(number)));
    expectCases(9);
}

TEST(HostileReplies, HaveTheSizesThatWereCounted) {
    for (const auto& counted : countedPlaces())
        EXPECT_EQ(conversation(counted.conversation)[counted.place].reply.size(), counted.size)
            << counted.label;
}

TEST_P(Cut, ByTheEndOfTheConnectionAtEveryByte) {
    cutEverywhere("closed",
                  [](RawConnection& connection, const Bytes& sent) { connection.finishWith(sent); });
}

TEST_P(Cut, ByTheEndOfTheConnectionAfterAStallAtEveryByte) {
    cutEverywhere("stalled and closed", [](RawConnection& connection, const Bytes& sent) {
        connection.write(sent);
        std::this_thread::sleep_for(stall);
        connection.close();
    });
}

TEST_P(Cut, OfAReplyInPiecesIsNone) {
    const auto action = [](RawConnection& connection, const Exchange& whole) {
        connection.readRequest();
        const std::size_t piece = whole.reply.size() <= smallReply ? 1 : 61;
        for (std::size_t done = 0; done < whole.reply.size(); done += piece) {
            const auto begin = whole.reply.begin() + static_cast<std::ptrdiff_t>(done);
            const auto length = std::min(piece, whole.reply.size() - done);
            connection.write({begin, begin + static_cast<std::ptrdiff_t>(length)});
        }
    };
    expectPlanned("in pieces", goingOnPlan(action), undisturbed(conversation));
    expectCases(1);
}

INSTANTIATE_TEST_SUITE_P(Reply, Cut, testing::ValuesIn(countedPlaces()), placeName);

/// A reset drops what the client's system had no room for. So these are the replies where it is all the same
/// how much of it has come.
std::vector<CountedPlace> placesOfExactResets() {
    std::vector<CountedPlace> places;
    for (const auto& counted : countedPlaces())
        if (counted.label != "large batch")
            places.push_back(counted);
    return places;
}

class CutByReset : public Cut {};

TEST_P(CutByReset, AtEveryByte) {
    cutEverywhere("reset", [](RawConnection& connection, const Bytes& sent) {
        connection.write(sent);
        connection.reset();
    });
}

INSTANTIATE_TEST_SUITE_P(Reply, CutByReset, testing::ValuesIn(placesOfExactResets()), placeName);

} // namespace
} // namespace hostile
