#include <cstddef>
#include <memory>
#include <new>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <tests/support/exchange_fixture.h>
#include <tests/support/failure_text.h>

namespace {

using support::Bytes;
using support::failureOf;
using support::joined;
using support::replyWith;
using support::result;
using support::text;
using support::u32;
using TAVO::NetworkError;
using TAVO::SpecificationError;

const std::string longText(300'000, 'x');
const std::string decodingFailed = "Error decoding TAVOX return values in call to thing.throwingDecoder: ";

/// Results of more than 64 KiB, which are decoded while they arrive.
using ArrivingResult = support::ExchangeFixture;

TEST_F(ArrivingResult, IsReceivedStraightIntoItsRecord) {
    const auto first = type();
    const auto second = type();
    run({first, second}, replyWith({typeResult(longText), typeResult("small")}));
    EXPECT_EQ(first->value().type, longText);
    EXPECT_EQ(second->value().type, "small");
    EXPECT_EQ(transport.received, transport.reply.size());
}

TEST_F(ArrivingResult, OfEverySizeAroundTheBoundComesWhole) {
    for (std::size_t size = 64 * 1024 - 12; size <= 64 * 1024 + 4; ++size) {
        const auto method = type();
        run({method}, replyWith({typeResult(std::string(size, 'y'))}));
        EXPECT_EQ(method->value().type.size(), size);
    }
}

TEST_F(ArrivingResult, IsReadInAnyPieces) {
    const auto method = readBy([](TAVOX::InputStream& in) -> TAVO::dto::result {
        const auto code = in.readInt32();
        EXPECT_EQ(in.size(), 100'004u);
        EXPECT_EQ(in.remaining(), 100'000u);
        EXPECT_EQ(in.readInt64(), 0x0102030405060708);
        EXPECT_EQ(in.readByte(), 9u);
        Bytes raw(3);
        in.readRaw(raw.data(), 3);
        EXPECT_EQ(raw, (Bytes{10, 11, 12}));
        in.awaitRest();
        EXPECT_EQ(in.arrived(), 99'988u);
        const auto* rest = in.readSpan(99'988);
        EXPECT_TRUE(rest != nullptr && rest[0] == 0xCC && rest[99'987] == 0xCC);
        EXPECT_EQ(in.remaining(), 0u);
        EXPECT_FALSE(in.failed());
        return {code, nullptr};
    });
    run({method},
        replyWith({result(5, joined({{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}, Bytes(99'988, 0xCC)}))}));
    EXPECT_EQ(method->returnCode(), 5);
}

TEST_F(ArrivingResult, FailsTheReaderThatWantsMoreThanItHas) {
    const auto method = readBy([](TAVOX::InputStream& in) -> TAVO::dto::result {
        EXPECT_EQ(in.readSpan(in.size() + 1), nullptr);
        EXPECT_TRUE(in.failed());
        EXPECT_EQ(in.readInt32(), 0);
        std::uint8_t untouched = 7;
        in.readRaw(&untouched, 1);
        EXPECT_EQ(untouched, 7u);
        return {};
    });
    EXPECT_EQ(failureOf<SpecificationError>([&] { run({method}, replyWith({result(0, Bytes(100'000))})); }),
              decodingFailed + "Could not read Result from device for method: thing.throwingDecoder");
    EXPECT_EQ(transport.received, transport.reply.size()) << "the reply is read to its end all the same";
}

TEST_F(ArrivingResult, IsReadToItsEndWhenItsDecoderStopsOrThrows) {
    const auto stops = readBy([](TAVOX::InputStream& in) -> TAVO::dto::result {
        return {in.readInt32(), nullptr};
    });
    run({stops}, replyWith({result(3, Bytes(200'000))}));
    EXPECT_EQ(stops->returnCode(), 3);
    EXPECT_EQ(transport.received, transport.reply.size());

    const auto throws = readBy([](TAVOX::InputStream&) -> TAVO::dto::result { throw std::bad_alloc(); });
    EXPECT_EQ(failureOf<SpecificationError>([&] { run({throws}, replyWith({result(3, Bytes(200'000))})); }),
              decodingFailed + "std::bad_alloc");
    EXPECT_EQ(transport.received, transport.reply.size());
    EXPECT_FALSE(throws->isResultSet());
}

TEST_F(ArrivingResult, LetsEverythingElseThatADecoderThrowsPass) {
    const auto method = readBy([](TAVOX::InputStream&) -> TAVO::dto::result { throw 42; });
    EXPECT_THROW(run({method}, replyWith({result(0, Bytes(200'000))})), int);
    EXPECT_EQ(transport.received, transport.reply.size());
}

TEST_F(ArrivingResult, ThatIsCutEndsAsTheBrokenConnectionThatItIs) {
    const auto reply = replyWith({typeResult(longText)});
    for (const std::size_t size : {std::size_t{16}, std::size_t{20}, std::size_t{24}, std::size_t{66'000},
                                   reply.size() / 2, reply.size() - 1}) {
        const auto method = type();
        transport.reply.assign(reply.begin(), reply.begin() + static_cast<std::ptrdiff_t>(size));
        transport.received = 0;
        EXPECT_EQ(failureOf<NetworkError>([&] { run({method}); }), "closed") << size;
        EXPECT_FALSE(method->isResultSet());
    }
}

TEST_F(ArrivingResult, AsksNothingMoreOfATransportThatHasFailed) {
    const auto reply = replyWith({typeResult(longText)});
    std::size_t operation = 0;
    for (;; ++operation) {
        support::ScriptedTransport failing(reply);
        failing.failingOperation = operation;
        TAVO::CallExchange fragile(failing);
        const std::vector<std::shared_ptr<TAVO::Method>> batch{type()};
        const auto failure = failureOf<NetworkError>([&] { fragile.run(0, batch); });
        if (failure == "no exception")
            break;
        EXPECT_EQ(failure, "broken");
        EXPECT_EQ(failing.operations, operation + 1);
        EXPECT_FALSE(fragile.isInStep());
    }
    EXPECT_GT(operation, 7u) << "the result arrived in pieces";
}

TEST_F(ArrivingResult, IsReadToItsEndThoughItsRecordIsShort) {
    const auto method = type();
    EXPECT_THROW(run({method}, replyWith({result(0, joined({u32(200'001), Bytes(200'000)}))})),
                 SpecificationError);
    EXPECT_EQ(transport.received, transport.reply.size());
    EXPECT_TRUE(exchange.isInStep());
}

TEST_F(ArrivingResult, ThatIsCutBehindAFaultIsTheBrokenConnectionToo) {
    const auto method = readBy([](TAVOX::InputStream& in) -> TAVO::dto::result {
        in.readSpan(in.size() + 1);
        throw std::invalid_argument("no such colour");
    });
    auto reply = replyWith({result(0, Bytes(200'000))});
    reply.pop_back();
    EXPECT_EQ(failureOf<NetworkError>([&] { run({method}, reply); }), "closed");
}

TEST_F(ArrivingResult, BoundsAListByTheBytesThatHaveCome) {
    using TAVO::dto::Base::MethodsReply;
    const auto method = readBy(TAVO::TAVOXTranscode::base_v1_0::decode_methodsVerbose);
    Bytes entries;
    for (std::uint32_t i = 0; i < 10'000; ++i)
        entries = joined({std::move(entries), text("name"), u32(i), text("signature")});
    run({method}, replyWith({result(0, joined({u32(10'000), entries}))}));
    const auto outcome = method->getResult();
    const auto* reply = dynamic_cast<const MethodsReply*>(outcome.reply.get());
    ASSERT_NE(reply, nullptr);
    ASSERT_EQ(reply->methods.size(), 10'000u);
    EXPECT_EQ(reply->methods.back().name, "name");
    EXPECT_EQ(reply->methods.back().id, 9'999u);
    EXPECT_EQ(reply->methods.back().signature, "signature");
}

TEST_F(ArrivingResult, LeavesATextThatIsLongerThanTheResultEmpty) {
    const auto method = readBy([](TAVOX::InputStream& in) {
        auto outcome = TAVO::TAVOXTranscode::base_v1_0::decode_type(in);
        EXPECT_TRUE(in.failed());
        const auto reply = std::dynamic_pointer_cast<TAVO::dto::Base::TypeReply>(outcome.reply);
        EXPECT_TRUE(reply && reply->type.empty());
        return outcome;
    });
    auto body = result(0, joined({u32(200'001), Bytes(200'000)}));
    EXPECT_THROW(run({method}, replyWith({body})), SpecificationError);
    EXPECT_EQ(transport.received, transport.reply.size());
}

} // namespace
