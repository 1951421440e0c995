#include <chrono>
#include <thread>

#include <tests/hostile/hostile_test.h>

namespace hostile {
namespace {

using support::RawConnection;

constexpr std::chrono::milliseconds stall{2};

Bytes firstOf(const Bytes& bytes, std::size_t count) {
    return {bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(count)};
}

class Cut : public HostilePlace {
protected:
    /// The peer ends the connection in that way after each number of bytes that is less than the reply.
    template <class Ending>
    void cutAtEveryByte(const std::string& how, Ending ending) {
        const auto whole = exchange().reply();
        for (std::size_t count = 0; count < whole.size(); ++count) {
            const auto sent = firstOf(whole, count);
            const auto action = [&](RawConnection& connection, const Exchange&) {
                connection.readRequest();
                ending(connection, sent);
            };
            expectCase(caseName("byte " + std::to_string(count) + ", " + how), plan(action),
                       afterBytes(GetParam(), sent, {}));
        }
        expectCases(replySizes[GetParam()]);
    }
};

TEST_F(HostileTest, ConversationIsOrdinaryWhenNothingDisturbsIt) {
    expectCase("undisturbed", {}, undisturbed());
    ASSERT_EQ(conversation().size(), places);
    for (std::size_t i = 0; i < places; ++i)
        EXPECT_EQ(conversation()[i].reply().size(), replySizes[i]) << conversation()[i].name;
}

TEST_P(Cut, ByTheEndOfTheConnectionAtEveryByte) {
    cutAtEveryByte("closed",
                   [](RawConnection& connection, const Bytes& sent) { connection.finishWith(sent); });
}

TEST_P(Cut, ByTheEndOfTheConnectionAfterAStallAtEveryByte) {
    cutAtEveryByte("stalled and closed", [](RawConnection& connection, const Bytes& sent) {
        connection.write(sent);
        std::this_thread::sleep_for(stall);
        connection.close();
    });
}

TEST_P(Cut, ByAResetAtEveryByte) {
    cutAtEveryByte("reset", [](RawConnection& connection, const Bytes& sent) {
        connection.write(sent);
        connection.reset();
    });
}

TEST_P(Cut, OfAReplyInSingleBytesIsNone) {
    const auto action = [](RawConnection& connection, const Exchange& whole) {
        connection.readRequest();
        for (const auto byte : whole.reply())
            connection.write({byte});
    };
    expectCase(caseName("single bytes"), goingOnPlan(action), undisturbed());
    expectCases(1);
}

INSTANTIATE_TEST_SUITE_P(Reply, Cut, testing::Range(std::size_t{0}, places), placeName);

} // namespace
} // namespace hostile
