#include <array>
#include <fstream>
#include <string>

#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <tests/hostile/client.h>
#include <tests/hostile/counted.h>
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

constexpr std::size_t benchNumber = 1;

Growth growthOverAllWrongReplies() {
    const auto hold = [](ConversationPeer& peer, std::size_t number, const Plan& plan) {
        peer.start(conversation(number), plan);
        converse(conversation(number), peer.port(), plan.place);
        peer.finish();
    };
    for (std::size_t number = 0; number < makersOfConversations.size(); ++number) {
        ConversationPeer peer;
        hold(peer, number, {}); // what is taken once and for all is taken now
    }
    const auto before = residentKilobytes("VmRSS");
    std::ofstream("/proc/self/clear_refs") << 5; // the peak begins anew
    Growth growth;
    for (const auto& counted : countedPlaces()) {
        if (counted.conversation == benchNumber)
            continue; // nothing there is larger than in the first one
        ConversationPeer peer;
        const auto& exchange = conversation(counted.conversation)[counted.place];
        for (const auto& wrong : wrongReplies(exchange.layout)) {
            hold(peer, counted.conversation, {counted.place, sending(wrong.of(exchange.reply)), true});
            ++growth.cases;
        }
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
    EXPECT_EQ(growth.cases, 780u + 300u + 693u);
    EXPECT_LT(growth.kilobytes, 4u * 1024);
    RecordProperty("cases", static_cast<int>(growth.cases));
    RecordProperty("kilobytes", static_cast<int>(growth.kilobytes));
}

} // namespace
} // namespace hostile
