#include <array>
#include <fstream>
#include <string>

#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <tests/hostile/client.h>
#include <tests/hostile/wrong_replies.h>
#include <tests/support/sanitizers.h>

namespace hostile {
namespace {

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
