#include <tests/hostile/hostile_test.h>

namespace hostile {
namespace {

class EndBehindTheReply : public HostilePlace {};

TEST_P(EndBehindTheReply, IsNoticedByNobody) {
    const auto action = [](support::RawConnection& connection, const Exchange& whole) {
        connection.readRequest();
        connection.finishWith(whole.reply);
    };
    expectAfterBytes("closed behind the reply", plan(action), exchange.reply);
    expectCases(1);
}

INSTANTIATE_TEST_SUITE_P(Reply, EndBehindTheReply, testing::ValuesIn(countedPlaces()), placeName);

} // namespace
} // namespace hostile
