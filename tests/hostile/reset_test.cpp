#include <chrono>
#include <thread>

#include <tests/hostile/hostile_test.h>

namespace hostile {
namespace {

using support::RawConnection;

class Reset : public HostilePlace {
protected:
    void expectNoReplyAfter(const std::string& what, const Plan::Action& action) {
        expectCase(caseName(what), plan(action), afterBytes(GetParam(), {}, {}));
        expectCases(1);
    }
};

TEST_P(Reset, BeforeTheRequestIsRead) {
    expectNoReplyAfter("reset before the request", [](RawConnection& connection, const Exchange&) {
        connection.hasInput(support::patience);
        connection.reset();
    });
}

TEST_P(Reset, InTheMiddleOfTheRequest) {
    expectNoReplyAfter("reset in the request", [](RawConnection& connection, const Exchange& asked) {
        connection.read(asked.request.size() / 2);
        connection.reset();
    });
}

TEST_P(Reset, BehindTheRequest) {
    expectNoReplyAfter("reset behind the request", [](RawConnection& connection, const Exchange&) {
        connection.readRequest();
        connection.reset();
    });
}

TEST_P(Reset, InTheMiddleOfTheReplyAfterAStall) {
    const auto whole = exchange().reply();
    const Bytes half(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(whole.size() / 2));
    const auto action = [&](RawConnection& connection, const Exchange&) {
        connection.readRequest();
        connection.write(half);
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
        connection.reset();
    };
    expectCase(caseName("reset in the reply"), plan(action), afterBytes(GetParam(), half, {}));
    expectCases(1);
}

INSTANTIATE_TEST_SUITE_P(Exchange, Reset, testing::Range(std::size_t{0}, places), placeName);

TEST(HostileConnect, IsRefusedWhereNobodyListens) {
    support::GuardedListener listener;
    listener.stop();
    const auto descriptors = support::openDescriptors();
    EXPECT_EQ(converse(listener.port(), places), std::vector{"open: " + refusedAt(listener.portText())});
    EXPECT_EQ(support::openDescriptors(), descriptors);
}

TEST(HostileConnect, ToAListenerThatClosesBeforeItAcceptsFailsOneWayOrTheOther) {
    const auto descriptors = support::openDescriptors();
    {
        support::ScriptedServer server([](support::RawListener& listener) {
            while (!listener.hasWaitingClient())
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
            listener.stop();
        });
        const auto events = converse(server.port(), places);
        // The end comes before the request or behind it.
        const auto refused = refusedAt(server.portText());
        ASSERT_EQ(events.size(), 1u);
        EXPECT_TRUE(events[0] == "open: " + refused || events[0] == "open: " + closedEarly) << events[0];
    }
    EXPECT_EQ(support::openDescriptors(), descriptors);
}

} // namespace
} // namespace hostile
