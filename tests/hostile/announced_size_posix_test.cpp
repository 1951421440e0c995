#include <tests/hostile/hostile_test.h>
#include <tests/hostile/wrong_replies.h>

namespace hostile {
namespace {

class AnnouncedSize : public HostilePlace {};

TEST_P(AnnouncedSize, ThatIsWrongIsReportedAsWhatTheReplyThenSays) {
    for (const auto& wrong : wrongReplies(exchange.layout)) {
        const auto sent = wrong.of(exchange.reply);
        expectAfterBytes(wrong.what, lastPlan(sending(sent)), sent);
    }
    expectCases(GetParam().wrong);
}

INSTANTIATE_TEST_SUITE_P(Reply, AnnouncedSize, testing::ValuesIn(countedPlaces()), placeName);

} // namespace
} // namespace hostile
