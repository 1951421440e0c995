#include <algorithm>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include <tests/support/exchange_fixture.h>

namespace {

using support::block;
using support::Bytes;
using support::joined;
using support::replyWith;
using support::result;
using support::text;
using support::u32;

constexpr std::size_t mebibyte = 1024 * 1024;

class CallExchange : public support::ExchangeFixture {};

TEST_F(CallExchange, SendsLockIdAndCountForAnEmptyBatch) {
    run({}, replyWith({}));
    EXPECT_EQ(transport.sent, (Bytes{0, 0, 0, 0, 0, 0, 0, 0}));
    EXPECT_EQ(transport.received, 12u);
}

TEST_F(CallExchange, PutsTheLockIdAtTheHead) {
    transport.reply = replyWith({});
    run({}, 0xA1B2C3D4);
    EXPECT_EQ(transport.sent, (Bytes{0xA1, 0xB2, 0xC3, 0xD4, 0, 0, 0, 0}));
}

TEST_F(CallExchange, SendsASizeOfZeroForEmptyParameters) {
    run({unreserve()}, replyWith({result(0)}));
    EXPECT_EQ(transport.sent, (Bytes{0, 0, 0, 0, 0, 0, 0, 1, 0, 0, 0, 7, 0, 0, 0, 0x23, 0, 0, 0, 0}));
}

TEST_F(CallExchange, SendsTheMethodsOfABatchInOrderAsOneRequest) {
    device->appliance.add(0x01020304, "other").listedMethod("unreserve", 0xFFFFFFFE);
    const auto other = std::make_shared<TAVO::Object_v1_0>(device, "other", 0x01020304u, nullptr,
                                                           tables.first, tables.second);
    run({reserve("ab", ""), other->getUnreserveMethod(), type()},
        replyWith({result(0), result(0), typeResult("x")}));
    EXPECT_EQ(transport.sent, (Bytes{0, 0, 0, 0, 0,    0,    0,    3,                 //
                                     0, 0, 0, 7, 0,    0,    0,    0x22, 0, 0, 0, 11, //
                                     0, 0, 0, 0, 2,    'a',  'b',  0,    0, 0, 0,     //
                                     1, 2, 3, 4, 0xFF, 0xFF, 0xFF, 0xFE, 0, 0, 0, 0,  //
                                     0, 0, 0, 7, 0,    0,    0,    0x21, 0, 0, 0, 0}));
    EXPECT_EQ(transport.sends, 1u);
    EXPECT_EQ(transport.receivedBeforeSend, 0u);
}

TEST_F(CallExchange, SendsParametersThatFillSeveralChunks) {
    const std::string large(100 * 1000, 'x');
    run({reserve(large, "end"), unreserve()}, replyWith({result(0), result(0)}));
    const auto parameters = joined({{0}, text(large), text("end")});
    EXPECT_EQ(transport.sent,
              joined({u32(0), u32(2), u32(7), u32(0x22), block(parameters), u32(7), u32(0x23), u32(0)}));
    EXPECT_EQ(transport.sends, 1u);
}

TEST_F(CallExchange, StoresEachResultInTheMethodAtItsPosition) {
    const auto first = type();
    const auto second = unreserve();
    const auto third = type();
    run({first, second, third}, replyWith({typeResult("one"), result(0), typeResult("three")}));
    EXPECT_EQ(first->value().type, "one");
    EXPECT_TRUE(second->isResultSet());
    EXPECT_EQ(second->getResult().reply, nullptr);
    EXPECT_EQ(third->value().type, "three");
}

TEST_F(CallExchange, TakesAReturnCodeForAResultNotForAFailure) {
    const auto failing = type();
    const auto negative = unreserve();
    run({failing, negative}, replyWith({result(5, text("still")), result(0xFFFFFFF6)}));
    EXPECT_EQ(failing->returnCode(), 5);
    EXPECT_EQ(failing->value().type, "still");
    EXPECT_EQ(negative->returnCode(), -10);
}

TEST_F(CallExchange, IgnoresWhatAResultBlockHoldsBeyondTheResult) {
    const auto first = type();
    const auto second = type();
    run({first, second},
        replyWith({joined({typeResult("one"), {1, 2, 3}}), joined({typeResult("two"), Bytes(500, 9)})}));
    EXPECT_EQ(first->value().type, "one");
    EXPECT_EQ(second->value().type, "two");
}

TEST_F(CallExchange, LeavesTheLaterResultInAMethodThatIsTwiceInTheBatch) {
    const auto twice = type();
    run({twice, twice}, replyWith({typeResult("earlier"), typeResult("later")}));
    EXPECT_EQ(twice->value().type, "later");
}

TEST_F(CallExchange, DropsTheStatusBytes) {
    for (const std::size_t size :
         {std::size_t{1}, std::size_t{5}, 64 * 1024 - std::size_t{1}, 64 * 1024 + std::size_t{1}, mebibyte}) {
        const auto method = type();
        run({method}, joined({block(Bytes(size, 0xFF)), u32(0), u32(1), block(typeResult("x"))}));
        EXPECT_EQ(method->value().type, "x") << size;
    }
    EXPECT_EQ(transport.received, transport.reply.size());
}

TEST_F(CallExchange, DropsAnyAmountOfStatusBytesThroughABoundedBuffer) {
    run({unreserve()}, joined({block(Bytes(20 * mebibyte, 0xFF)), u32(0), u32(1), block(result(0))}));
    EXPECT_LE(*std::max_element(transport.runs.begin(), transport.runs.end()), 64u * 1024);
}

class LargeBlock : public CallExchange, public testing::WithParamInterface<std::size_t> {};

TEST_P(LargeBlock, ArrivesWholeAndIsFollowedByTheNextOne) {
    std::string content(GetParam(), '\0');
    for (std::size_t i = 0; i < content.size(); ++i)
        content[i] = static_cast<char>(i % 251);
    const auto large = type();
    const auto small = type();
    run({large, small}, replyWith({typeResult(content), typeResult("small")}));
    EXPECT_TRUE(large->value().type == content);
    EXPECT_EQ(small->value().type, "small");
}

INSTANTIATE_TEST_SUITE_P(Sizes, LargeBlock,
                         testing::Values(0u, 1u, 64u * 1024 - 8, 64u * 1024 - 7, 64u * 1024 + 1, 1u << 17,
                                         mebibyte, 20 * mebibyte));

TEST_F(CallExchange, GoesOnWithSmallRepliesAfterALargeOne) {
    run({type()}, replyWith({typeResult(std::string(mebibyte, 'x'))}));
    transport.runs.clear();
    const auto after = type();
    run({after}, replyWith({typeResult("after")}));
    EXPECT_EQ(after->value().type, "after");
    EXPECT_EQ(transport.sends, 2u);
}

TEST_F(CallExchange, ReceivesEachFieldAndBlockOfASmallReplyOnce) {
    run({type()}, replyWith({typeResult("abc")}));
    EXPECT_EQ(transport.runs, (std::vector<std::uint64_t>{4, 4, 4, 4, 11}));
}

} // namespace
