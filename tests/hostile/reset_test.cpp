#include <algorithm>
#include <chrono>
#include <thread>

#include <tests/hostile/hostile_test.h>

namespace hostile {
namespace {

using support::RawConnection;

class Reset : public HostilePlace {
protected:
    void expectNoReplyAfter(const std::string& what, const Plan::Action& action) {
        expectAfterBytes(what, plan(action), {});
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
    const auto& whole = exchange.reply;
    const Bytes half(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(whole.size() / 2));
    const auto action = [&](RawConnection& connection, const Exchange&) {
        connection.readRequest();
        connection.write(half);
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
        connection.reset();
    };
    expectAfterBytes("reset in the reply", plan(action), half);
    expectCases(1);
}

INSTANTIATE_TEST_SUITE_P(Exchange, Reset, testing::ValuesIn(countedPlaces()), placeName);

TEST(HostileConnect, IsRefusedWhereNobodyListens) {
    support::GuardedListener listener;
    listener.stop();
    const auto descriptors = support::openDescriptors();
    EXPECT_EQ(converse(conversation(0), listener.port(), {}),
              std::vector{"open: " + refusedAt(listener.portText())});
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
        const auto events = converse(conversation(0), server.port(), {});
        // The end comes while the client connects, while it sends the request, or behind it.
        const auto port = server.portText();
        const std::vector<std::string> ways{"open: " + refusedAt(port),
                                            "open: " + refusedAt(port, support::SystemError::connectionReset),
                                            "open: " + cutOffWhileSending, "open: " + closedEarly};
        ASSERT_EQ(events.size(), 1u);
        EXPECT_NE(std::find(ways.begin(), ways.end(), events[0]), ways.end()) << events[0];
    }
    EXPECT_EQ(support::openDescriptors(), descriptors);
}

} // namespace
} // namespace hostile
