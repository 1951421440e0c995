#include <array>
#include <fstream>
#include <set>
#include <string>

#include <sys/wait.h>
#include <unistd.h>

#include <tavo/client/wire/byte_order.h>
#include <tests/hostile/hostile_test.h>

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

// Three for each 0 among the sizes and counts of a reply, four for each 1, five for each other number.
constexpr std::size_t wrongReplies[places] = {60, 20, 15, 60, 18, 20, 15, // device
                                              30, 20, 30, 18,             // private
                                              35, 20, 15, 35, 18, 24,     // system, rootMembers
                                              60, 20, 15, 60, 18,         // uart
                                              53, 39, 47, 15};            // calls, unlock

struct WrongReply {
    std::string what;
    Bytes bytes;
};

/// The reply with one field changed, for each size and count in it and each wrong value.
std::vector<WrongReply> wrongRepliesAt(std::size_t place) {
    std::vector<WrongReply> replies;
    auto layout = conversation()[place].layout;
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
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    GTEST_SKIP() << "the sanitizer keeps memory that was given back";
#endif
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
    EXPECT_EQ(growth.cases, 780u);
    EXPECT_LT(growth.kilobytes, 4u * 1024);
    RecordProperty("cases", static_cast<int>(growth.cases));
    RecordProperty("kilobytes", static_cast<int>(growth.kilobytes));
}

} // namespace
} // namespace hostile
