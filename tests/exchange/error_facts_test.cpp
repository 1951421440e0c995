#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <tests/support/exchange_fixture.h>

namespace {

using support::Bytes;
using support::deviceError;
using support::errorReply;
using support::joined;
using support::replyWith;
using support::result;
using support::text;
using support::u32;
using TAVO::ErrorFacts;
using TAVO::ErrorOrigin;
namespace base_v1_0 = TAVO::TAVOXTranscode::base_v1_0;

/// What goes with the errors of an exchange besides their texts.
class FactsOfExchange : public support::ExchangeFixture {
protected:
    /// Of the error in which the batch ends.
    ErrorFacts factsOf(const Batch& batch, const Bytes& reply = {}) {
        try {
            run(batch, reply);
        } catch (const TAVO::Error& error) {
            EXPECT_EQ(error.facts().connectionUsable, exchange.isInStep());
            return error.facts();
        }
        ADD_FAILURE() << "no error";
        return {};
    }
};

TEST_F(FactsOfExchange, TellTheCodeThatTheDeviceHasReported) {
    for (const std::uint32_t code :
         {0u, 999u, 1000u, 1001u, 1002u, 1003u, 1004u, 1005u, 1006u, 1007u, 1013u, 4294967295u}) {
        const ErrorFacts expected{
            .origin = ErrorOrigin::device, .deviceErrorCode = code, .method = "thing.type"};
        EXPECT_EQ(factsOf({type()}, errorReply(code, "why")), expected) << code;
    }
}

TEST_F(FactsOfExchange, NameTheMethodOfABatchThatTheDeviceBlames) {
    const auto blamed =
        factsOf({type(), unreserve(), type()}, errorReply(1006, "stuck", {typeResult("a"), result(1)}));
    EXPECT_EQ(blamed.method, "thing.unreserve");
    EXPECT_EQ(blamed.deviceErrorCode, 1006u);
    const auto notBlamed = factsOf({type(), unreserve()}, errorReply(1000, "why", {typeResult("a")}));
    EXPECT_EQ(notBlamed.method, "");
    EXPECT_EQ(notBlamed.deviceErrorCode, 1000u);
}

TEST_F(FactsOfExchange, TellThatResultsOfNobodyAreLeft) {
    const auto facts = factsOf({type()}, errorReply(1000, "why", {typeResult("a"), typeResult("b")}));
    EXPECT_FALSE(facts.connectionUsable);
    EXPECT_EQ(facts.origin, ErrorOrigin::device);
}

TEST_F(FactsOfExchange, AreTheLibrarysWhereNothingIsSent) {
    const ErrorFacts nameless;
    EXPECT_EQ(factsOf({type(), nullptr}), nameless);
    EXPECT_EQ(factsOf({type(), named("reserve")}), (ErrorFacts{.method = "thing.reserve"}));
    const TAVO::Container plain("plain", nullptr);
    const auto method = std::make_shared<TAVO::Method>("call", plain, TAVO::dto::Params());
    EXPECT_EQ(factsOf({type(), method}), (ErrorFacts{.method = "plain.call"}));
    EXPECT_EQ(transport.sends, 0u);
}

TEST_F(FactsOfExchange, TellOfAConnectionThatWasOutOfStepBefore) {
    EXPECT_FALSE(factsOf({type()}, errorReply(1000, "", {result(0), result(0)})).connectionUsable);
    EXPECT_EQ(factsOf({nullptr}), (ErrorFacts{.connectionUsable = false}));
}

TEST_F(FactsOfExchange, AreTheLibrarysForAFrameThatCannotBeRight) {
    const auto withoutResults = factsOf({type()}, joined({u32(0), u32(0), u32(0)}));
    EXPECT_EQ(withoutResults, (ErrorFacts{.connectionUsable = false, .method = "thing.type"}));
    const auto tooMany = factsOf({type(), type()}, joined({u32(0), u32(0), u32(3)}));
    EXPECT_EQ(tooMany, (ErrorFacts{.connectionUsable = false}));
    const auto shortError = factsOf({type()}, joined({u32(0), u32(2), {1, 2}}));
    EXPECT_EQ(shortError, (ErrorFacts{.connectionUsable = false, .method = "thing.type"}));
}

TEST_F(FactsOfExchange, AreTheConnectionsWhereItEnds) {
    const ErrorFacts ofTheOne{
        .origin = ErrorOrigin::connection, .connectionUsable = false, .method = "thing.type"};
    EXPECT_EQ(factsOf({type()}), ofTheOne);
    EXPECT_EQ(factsOf({unreserve(), type()}, joined({u32(0), u32(0), u32(2), support::block(result(0))})),
              ofTheOne)
        << "the method whose result was waited for";
    const ErrorFacts ofNone{.origin = ErrorOrigin::connection, .connectionUsable = false};
    EXPECT_EQ(factsOf({type(), type()}), ofNone);
}

TEST_F(FactsOfExchange, LeaveTheExceptionOfAnotherTransportWhatItIs) {
    class Another : public TAVO::Transport {
    public:
        struct Fault : TAVO::NetworkError {
            using NetworkError::NetworkError;
            int number = 42;
        };
        void send(const TAVOX::OutputStream::Chunks&) override {}
        void receiveAll(std::uint8_t*, std::uint64_t) override {
            if (throwsInt)
                throw 7;
            throw Fault("the other way");
        }
        bool throwsInt = false;
    };
    Another another;
    TAVO::CallExchange over(another);
    const auto method = type();
    try {
        over.run(0, std::span<const std::shared_ptr<TAVO::Method>>(Batch{method}));
        FAIL() << "no exception";
    } catch (const Another::Fault& fault) {
        EXPECT_STREQ(fault.what(), "the other way");
        EXPECT_EQ(fault.number, 42);
        EXPECT_EQ(fault.facts().origin, ErrorOrigin::connection);
    }
    another.throwsInt = true;
    EXPECT_THROW(over.run(0, std::span<const std::shared_ptr<TAVO::Method>>(Batch{method})), int);
}

// Results that cannot be decoded.

class FactsOfResult : public FactsOfExchange {
protected:
    /// Field and offset of a result that ends the batch.
    std::pair<std::string, std::optional<std::uint64_t>> placeIn(const std::shared_ptr<TAVO::Method>& method,
                                                                 const Bytes& resultBlock) {
        testing::internal::CaptureStderr();
        const auto facts = factsOf({method}, replyWith({resultBlock}));
        EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
        EXPECT_EQ(facts.origin, ErrorOrigin::library);
        EXPECT_TRUE(facts.connectionUsable) << "it was the last result";
        EXPECT_EQ(facts.method, method->getFullName());
        return {facts.field, facts.offset};
    }
    using Place = std::pair<std::string, std::optional<std::uint64_t>>;

    static Bytes cut(const Bytes& whole, std::size_t size) {
        return {whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size)};
    }
};

TEST_F(FactsOfResult, NameTheFieldThatIsCutAnywhere) {
    const auto available = result(0, joined({{1}, text("who"), text("why")}));
    for (std::size_t size = 0; size < available.size(); ++size) {
        const auto expected = size < 4    ? Place{"return code", 0}
                              : size < 5  ? Place{"available", 4}
                              : size < 12 ? Place{"user", 5}
                                          : Place{"info", 12};
        EXPECT_EQ(placeIn(readBy(base_v1_0::decode_available), cut(available, size)), expected) << size;
    }
}

TEST_F(FactsOfResult, NameTheReturnCodeOfAStatus) {
    EXPECT_EQ(placeIn(unreserve(), {0, 0}), (Place{"return code", 0}));
}

TEST_F(FactsOfResult, NameAnEmptyTextOnlyWhereItIsCut) {
    const auto available = result(0, joined({{1}, text(""), text("")}));
    EXPECT_EQ(placeIn(readBy(base_v1_0::decode_available), cut(available, 8)), (Place{"user", 5}));
    EXPECT_EQ(placeIn(readBy(base_v1_0::decode_available), cut(available, 9)), (Place{"info", 9}));
}

TEST_F(FactsOfResult, NameAListWhoseCountCannotBeRight) {
    const auto two = joined({text("a"), u32(1), text("b"), u32(2)});
    EXPECT_EQ(placeIn(readBy(base_v1_0::decode_members), result(0, joined({u32(3), two}))),
              (Place{"members", 4}));
    EXPECT_EQ(placeIn(readBy(base_v1_0::decode_members), result(0, {0, 0})), (Place{"members", 4}));
}

TEST_F(FactsOfResult, NameTheElementOfAList) {
    const auto longName = joined({text("a"), u32(1), u32(100), {'b'}, u32(2)});
    EXPECT_EQ(placeIn(readBy(base_v1_0::decode_members), result(0, joined({u32(2), longName}))),
              (Place{"members[1].name", 4 + 4 + 9}));
    const auto noId = joined({text("a"), u32(1), text("bcde"), {0, 0}});
    EXPECT_EQ(placeIn(readBy(base_v1_0::decode_members), result(0, joined({u32(2), noId}))),
              (Place{"members[1].id", 4 + 4 + 9 + 8}));
}

TEST_F(FactsOfResult, KnowWhatTravelsOfAListOfMethods) {
    const auto longName = joined({text("get"), u32(1), u32(100), {'b'}, u32(2)});
    EXPECT_EQ(placeIn(readBy(base_v1_0::decode_methods), result(0, joined({u32(2), longName}))),
              (Place{"methods[1].name", 4 + 4 + 11}));
}

TEST_F(FactsOfResult, NameTheFieldOfALargeResultThatIsReadAsItArrives) {
    const std::string large(100'000, 'x');
    EXPECT_EQ(placeIn(readBy(base_v1_0::decode_available),
                      result(0, joined({{1}, text(large), u32(50), Bytes(49)}))),
              (Place{"info", 4 + 1 + 4 + large.size()}));
    EXPECT_EQ(placeIn(readBy(base_v1_0::decode_type), result(0, joined({u32(70'001), Bytes(70'000)}))),
              (Place{"type", 4}));

    Bytes entries;
    for (std::uint32_t i = 0; i < 10'000; ++i) {
        const auto entry = joined({text("name"), u32(i), text("")});
        entries.insert(entries.end(), entry.begin(), entry.end());
    }
    const auto wrong = joined({text("name"), u32(7), u32(1)});
    EXPECT_EQ(
        placeIn(readBy(base_v1_0::decode_methodsVerbose), result(0, joined({u32(10'001), entries, wrong}))),
        (Place{"methods[10000].signature", 4 + 4 + entries.size() + 12}));
}

TEST_F(FactsOfResult, KnowNoFieldOfAnApplicationsOwnDecoder) {
    const auto method = readBy([](TAVOX::InputStream& in) { return base_v1_0::decode_type(in); });
    EXPECT_EQ(placeIn(method, result(0, {0, 0})), (Place{"", std::nullopt}));
    const auto throws = readBy(
        [](TAVOX::InputStream&) -> TAVO::dto::result { throw std::invalid_argument("no such colour"); });
    EXPECT_EQ(placeIn(throws, result(0)), (Place{"", std::nullopt}));
}

TEST_F(FactsOfResult, TellOfResultsThatAreLeft) {
    const auto facts = factsOf({type(), type()}, replyWith({result(0), typeResult("a")}));
    EXPECT_FALSE(facts.connectionUsable);
    EXPECT_EQ(facts.field, "type");
    EXPECT_EQ(facts.method, "thing.type");
}

} // namespace
