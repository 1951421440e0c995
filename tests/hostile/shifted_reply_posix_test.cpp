#include <tests/hostile/hostile_test.h>

namespace hostile {
namespace {

using support::joined;

class ShiftedReply : public HostilePlace {};

TEST_P(ShiftedReply, IsReportedAsWhatItThenSays) {
    const Bytes strays[]{{0}, {0, 0}, {0, 0, 0},    {0, 0, 0, 0},
                         {1}, {0xFF}, {0, 0, 0, 1}, {0xFF, 0xFF, 0xFF, 0xFF}};
    for (const auto& stray : strays) {
        const auto sent = joined({stray, exchange.reply});
        const auto action = [&](support::RawConnection& connection, const Exchange&) {
            connection.readRequest();
            connection.finishWith(sent);
        };
        expectAfterBytes(std::to_string(stray.size()) + " bytes of " + std::to_string(stray.back()) +
                             " before the reply",
                         lastPlan(action), sent);
    }
    expectCases(8);
}

INSTANTIATE_TEST_SUITE_P(Reply, ShiftedReply, testing::ValuesIn(countedPlaces()), placeName);

} // namespace
} // namespace hostile
