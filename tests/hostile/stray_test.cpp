#include <tests/hostile/hostile_test.h>

namespace hostile {
namespace {

using support::joined;
using support::RawConnection;

class Stray : public HostilePlace {};

TEST_P(Stray, BytesBehindTheReplyAreRefusedByTheNextCalls) {
    for (const std::size_t count : {1u, 3u}) {
        const auto action = [&](RawConnection& connection, const Exchange& whole) {
            connection.readRequest();
            connection.write(joined({whole.reply, Bytes(count, 0xA5)}));
        };
        expectPlanned(std::to_string(count) + " bytes behind the reply", goingOnPlan(action),
                      afterStrayBytes(conversation, GetParam().place, count));
    }
    expectCases(2);
}

INSTANTIATE_TEST_SUITE_P(Reply, Stray, testing::ValuesIn(countedPlaces()), placeName);

} // namespace
} // namespace hostile
