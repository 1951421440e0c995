#include <array>
#include <fstream>
#include <set>
#include <string>

#include <sys/wait.h>
#include <unistd.h>

#include <tavo/client/wire/byte_order.h>
#include <tests/hostile/hostile_test.h>
#include <tests/support/sanitizers.h>

namespace hostile {
namespace {

using support::RawConnection;

/// Wrong values of a field that says how much follows.
std::set<std::uint32_t> wrongValues(const Bytes& right) {
    const auto value = TAVOX::loadBigEndian<std::uint32_t>(right.data());
    std::set<std::uint32_t> wrong{0, value + 1, value - 1, 0x7FFFFFFF, 0xFFFFFFFF};
    wrong.erase(value);
    return wrong;
}

// Three for each 0 among the sizes and counts of a reply, four for each 1, five for each other number; and
// four more for each that lies within a result.
constexpr std::size_t wrongReplies[places] = {60 + 36, 20 + 4,  15,      60 + 36, 18 + 4,
                                              20 + 4,  15,                                // device
                                              30 + 12, 20 + 4,  30 + 12, 18 + 4,          // private
                                              35 + 16, 20 + 4,  15,      35 + 16, 18 + 4, // system
                                              24 + 8,                                     // rootMembers
                                              60 + 36, 20 + 4,  15,      60 + 36, 18 + 4, // uart
                                              53 + 12, 39 + 12, 47 + 32, 15};             // calls, unlock

struct WrongReply {
    std::string what;
    Bytes bytes;
};

bool isResultSize(const Field& field) { return field.name.starts_with("result size of "); }

/// The reply with one field changed, for each size and count in it and each wrong value.
std::vector<WrongReply> wrongAlone(Layout layout) {
    std::vector<WrongReply> replies;
    for (auto& field : layout) {
        if (!field.announces)
            continue;
        const auto right = field.bytes;
        for (const auto wrong : wrongValues(right)) {
            field.bytes = support::u32(wrong);
            replies.push_back({field.name + " says " + std::to_string(wrong), bytesOf(layout)});
        }
        field.bytes = right;
    }
    return replies;
}

/// The reply with a size or count within a result that is huge, and a result that claims to be large enough.
std::vector<WrongReply> wrongTogether(Layout layout) {
    std::vector<WrongReply> replies;
    Field* size = nullptr;
    for (auto& field : layout) {
        if (isResultSize(field))
            size = &field;
        if (!field.announces || !size || size == &field)
            continue;
        const auto right = field.bytes;
        const auto rightSize = size->bytes;
        for (const std::uint32_t wrongSize : {0x7FFFFFFFu, 0xFFFFFFFFu})
            for (const std::uint32_t wrong : {0x00FFFFFFu, 0x7FFFFF00u}) {
                size->bytes = support::u32(wrongSize);
                field.bytes = support::u32(wrong);
                replies.push_back({field.name + " says " + std::to_string(wrong) + " and the " + size->name +
                                       " says " + std::to_string(wrongSize),
                                   bytesOf(layout)});
            }
        field.bytes = right;
        size->bytes = rightSize;
    }
    return replies;
}

std::vector<WrongReply> wrongRepliesAt(std::size_t place) {
    auto replies = wrongAlone(conversation()[place].layout);
    const auto more = wrongTogether(conversation()[place].layout);
    replies.insert(replies.end(), more.begin(), more.end());
    return replies;
}

Plan::Action sending(const Bytes& bytes) {
    return [bytes](RawConnection& connection, const Exchange&) {
        connection.readRequest();
        connection.finishWith(bytes);
    };
}

class AnnouncedSize : public HostilePlace {};

TEST_P(AnnouncedSize, ThatIsWrongIsReportedAsWhatTheReplyThenSays) {
    for (const auto& wrong : wrongRepliesAt(GetParam()))
        expectCase(caseName(wrong.what), lastPlan(sending(wrong.bytes)),
                   afterBytes(GetParam(), wrong.bytes, peer.refusal()));
    expectCases(wrongReplies[GetParam()]);
}

INSTANTIATE_TEST_SUITE_P(Reply, AnnouncedSize, testing::Range(std::size_t{0}, places), placeName);

/// Kilobytes of this process that are in memory.
std::size_t residentKilobytes(const std::string& which) {
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;)
        if (std::size_t kilobytes = 0; word == which + ":" && status >> kilobytes)
            return kilobytes;
    return 0;
}

struct Growth {
    std::size_t cases = 0;
    std::size_t kilobytes = 0;
};

Growth growthOverAllWrongReplies() {
    ConversationPeer peer;
    peer.start({});
    converse(peer.port(), places); // what is taken once and for all is taken now
    peer.finish();
    const auto before = residentKilobytes("VmRSS");
    std::ofstream("/proc/self/clear_refs") << 5; // the peak begins anew
    Growth growth;
    for (std::size_t place = 0; place < places; ++place)
        for (const auto& wrong : wrongRepliesAt(place)) {
            peer.start({place, sending(wrong.bytes), true});
            converse(peer.port(), place);
            peer.finish();
            ++growth.cases;
        }
    growth.kilobytes = residentKilobytes("VmHWM") - before;
    return growth;
}

TEST(AnnouncedSizes, MakeTheProcessGrowLittle) {
    if (support::sanitizerTakesMemory)
        GTEST_SKIP() << "the sanitizer keeps memory that was given back";
    std::array<int, 2> ends{};
    ASSERT_EQ(pipe(ends.data()), 0);
    const auto child = fork();
    if (child == 0) {
        alarm(100);
        const auto growth = growthOverAllWrongReplies();
        _exit(write(ends[1], &growth, sizeof growth) == sizeof growth ? 0 : 1);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
    Growth growth;
    ASSERT_EQ(read(ends[0], &growth, sizeof growth), static_cast<ssize_t>(sizeof growth));
    close(ends[0]);
    close(ends[1]);
    EXPECT_EQ(growth.cases, 780u + 300u);
    EXPECT_LT(growth.kilobytes, 4u * 1024);
    RecordProperty("cases", static_cast<int>(growth.cases));
    RecordProperty("kilobytes", static_cast<int>(growth.kilobytes));
}

} // namespace
} // namespace hostile
