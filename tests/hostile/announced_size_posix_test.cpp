#include <tests/hostile/hostile_test.h>
#include <tests/hostile/wrong_replies.h>

namespace hostile {
namespace {

// Three for each 0 among the sizes and counts of a reply, four for each 1, five for each other number; and
// four more for each that lies within a result.
constexpr std::size_t wrongReplies[places] = {60 + 36, 20 + 4,  15,      60 + 36, 18 + 4,
                                              20 + 4,  15,                                // device
                                              30 + 12, 20 + 4,  30 + 12, 18 + 4,          // private
                                              35 + 16, 20 + 4,  15,      35 + 16, 18 + 4, // system
                                              24 + 8,                                     // rootMembers
                                              60 + 36, 20 + 4,  15,      60 + 36, 18 + 4, // uart
                                              53 + 12, 39 + 12, 47 + 32, 15};             // calls, unlock

class AnnouncedSize : public HostilePlace {};

TEST_P(AnnouncedSize, ThatIsWrongIsReportedAsWhatTheReplyThenSays) {
    for (const auto& wrong : wrongRepliesAt(GetParam()))
        expectCase(caseName(wrong.what), lastPlan(sending(wrong.bytes)),
                   afterBytes(GetParam(), wrong.bytes, peer.refusal()));
    expectCases(wrongReplies[GetParam()]);
}

INSTANTIATE_TEST_SUITE_P(Reply, AnnouncedSize, testing::Range(std::size_t{0}, places), placeName);

} // namespace
} // namespace hostile
