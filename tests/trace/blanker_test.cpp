#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>

#include <gtest/gtest.h>

#include <tavo/client/device/device_factory.h>
#include <tavo/server/frames.h>
#include <tavo/trace/blanker.h>
#include <tests/support/wire_bytes.h>

namespace {

using TAVO::server::appendReplyHead;
using TAVO::server::appendWord;
using TAVO::trace::Blanker;

constexpr std::uint32_t heldLock = 0xCAFEBABE;
constexpr std::uint32_t unnamedMethod = 77;

class BlankedConnection : public testing::Test {
protected:
    void ask(std::uint32_t instanceId) {
        support::Bytes request;
        for (const auto word : {0U, 1U, instanceId, unnamedMethod, 0U})
            appendWord(request, word);
        blanker.sent(request);
    }
    static support::Bytes replyWithLockId(std::size_t statusBytes) {
        support::Bytes reply;
        appendReplyHead(reply, {}, 1, support::Bytes(statusBytes, '.'));
        for (const auto word : {8U, 0U, heldLock})
            appendWord(reply, word);
        return reply;
    }
    /// Whether the reply comes through with its lock id, passed in pieces.
    bool showsLockId(support::Bytes reply, std::size_t pieceBytes) {
        for (std::size_t begin = 0; begin < reply.size(); begin += pieceBytes)
            blanker.received(std::span(reply).subspan(begin, std::min(pieceBytes, reply.size() - begin)));
        support::Bytes lockId;
        appendWord(lockId, heldLock);
        return std::search(reply.begin(), reply.end(), lockId.begin(), lockId.end()) != reply.end();
    }

    TAVO::trace::Names names;
    Blanker blanker{names};
};

TEST_F(BlankedConnection, ShowsNoResultOfAnUnnamedMethodOfTheDevice) {
    ask(TAVO::DeviceFactory::DeviceInstanceID);
    auto reply = replyWithLockId(0);
    blanker.received(reply);
    EXPECT_EQ(support::hexOf({reply.end() - 8, reply.end()}), "000000002a2a2a2a"); // the return code stays
    ask(1000);
    EXPECT_TRUE(showsLockId(replyWithLockId(0), 4096));
}

TEST_F(BlankedConnection, ShowsNothingOfTheDeviceBehindAHeadThatIsTooLong) {
    ask(TAVO::DeviceFactory::DeviceInstanceID);
    EXPECT_FALSE(showsLockId(replyWithLockId((1u << 20) + 1), 32768));
    ask(1000);
    EXPECT_FALSE(showsLockId(replyWithLockId(0), 4096));
}

TEST_F(BlankedConnection, KeepsWhatItUnderstoodOfAPieceThatCannotBeRead) {
    ask(1000);
    auto two = replyWithLockId(0);
    const auto whole = two.size();
    const auto nobodyAskedFor = replyWithLockId(0);
    two.insert(two.end(), nobodyAskedFor.begin(), nobodyAskedFor.end());
    blanker.received(two);
    EXPECT_TRUE(std::equal(nobodyAskedFor.begin(), nobodyAskedFor.end(), two.begin()));
    EXPECT_EQ(support::Bytes(two.begin() + static_cast<std::ptrdiff_t>(whole), two.end()),
              support::Bytes(nobodyAskedFor.size(), '*'));
}

} // namespace
