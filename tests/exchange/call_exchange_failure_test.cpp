#include <algorithm>
#include <memory>
#include <ostream>
#include <string>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>

#include <tests/support/allocation_meter.h>
#include <tests/support/exchange_fixture.h>
#include <tests/support/failure_text.h>

namespace {

using support::block;
using support::Bytes;
using support::deviceError;
using support::errorReply;
using support::failureOf;
using support::joined;
using support::replyWith;
using support::result;
using support::text;
using support::u32;
using TAVO::Error;
using TAVO::SpecificationError;

class CallExchangeFailure : public support::ExchangeFixture {
protected:
    template <class Exception>
    std::string failureOfRun(const Batch& batch, const Bytes& reply = {}) {
        return failureOf<Exception>([&] { run(batch, reply); });
    }

    static std::vector<bool> resultsSet(const Batch& batch) {
        std::vector<bool> set;
        for (const auto& method : batch)
            set.push_back(method->isResultSet());
        return set;
    }

    Batch types(std::size_t count) {
        Batch batch;
        for (std::size_t i = 0; i < count; ++i)
            batch.push_back(type());
        return batch;
    }
};

// Before anything is sent.

TEST_F(CallExchangeFailure, RefusesANullMethodAnywhereInTheBatch) {
    for (const std::size_t position : {0u, 1u, 2u}) {
        auto batch = types(3);
        batch[position] = nullptr;
        EXPECT_EQ(failureOfRun<Error>(batch), "NULL method found in multicall queue");
    }
    EXPECT_EQ(transport.operations, 0u);
}

TEST_F(CallExchangeFailure, RefusesAMethodOfAPlainContainer) {
    const TAVO::Container plain("plain", nullptr);
    const auto method = std::make_shared<TAVO::Method>("call", plain, TAVO::dto::Params());
    EXPECT_EQ(failureOfRun<SpecificationError>({type(), method}),
              "Method does not belong to a remote object: plain.call");
    EXPECT_EQ(transport.operations, 0u);
}

TEST_F(CallExchangeFailure, NamesTheMethodWhoseEncoderThrows) {
    testing::internal::CaptureStderr();
    EXPECT_EQ(
        failureOfRun<SpecificationError>({type(), named("reserve")}),
        "Error encoding TAVOX parameters in call to thing.reserve: Can't convert Params to desire type");
    EXPECT_NE(testing::internal::GetCapturedStderr().find("const Can't convert "), std::string::npos);
    EXPECT_EQ(transport.operations, 0u);
}

TEST_F(CallExchangeFailure, NamesTheMethodForWhichTheWriterHasNoMemory) {
    const auto large = reserve(std::string(50 * 1000, 'x'), "");
    std::string failure;
    {
        const support::NothrowLimit limit(1);
        failure = failureOfRun<Error>({type(), large, type()});
    }
    EXPECT_EQ(failure, "Error writing to output stream for method: thing.reserve");
    EXPECT_EQ(transport.operations, 0u);
}

// Counts.

TEST_F(CallExchangeFailure, RefusesAWrongCountOfResultsWithoutDecodingAny) {
    const auto batch = types(3);
    EXPECT_EQ(failureOfRun<Error>(batch, replyWith({typeResult("a"), typeResult("b")})),
              "Error calling methods: received result count of 2 expected count of 3");
    EXPECT_EQ(transport.received, 12u);
    EXPECT_EQ(resultsSet(batch), (std::vector{false, false, false}));
}

TEST_F(CallExchangeFailure, PrintsCountsAsUnsignedNumbers) {
    EXPECT_EQ(failureOfRun<Error>(types(1), joined({u32(0), u32(0), u32(0xFFFFFFFF)})),
              "Error calling methods: received result count of 4294967295 expected count of 1");
}

TEST_F(CallExchangeFailure, RefusesResultsOfAnEmptyBatch) {
    EXPECT_EQ(failureOfRun<Error>({}, joined({u32(0), u32(0), u32(1)})),
              "Error calling methods: received result count of 1 expected count of 0");
}

// Errors that the device reports.

TEST_F(CallExchangeFailure, TurnsDeviceErrorsIntoTheirClasses) {
    const auto reported = [&](std::uint32_t code) { return errorReply(code, "why"); };
    EXPECT_EQ(failureOfRun<TAVO::ConfigurationError>(types(1), reported(1000)), "why");
    EXPECT_EQ(failureOfRun<TAVO::LockError>(types(1), reported(1001)), "The device is locked by why");
    for (const std::uint32_t code : {1002u, 1003u, 1004u, 1005u})
        EXPECT_EQ(failureOfRun<SpecificationError>(types(1), reported(code)), "why");
    EXPECT_EQ(failureOfRun<TAVO::TAVOLoginError>(types(1), reported(1013)), "why");
    EXPECT_EQ(transport.received, transport.reply.size());
}

TEST_F(CallExchangeFailure, NamesUnknownDeviceErrorsByTheirUnsignedCode) {
    for (const std::uint32_t code :
         {0u, 1u, 999u, 1007u, 1008u, 1009u, 1010u, 1011u, 1012u, 1014u, 4294967295u})
        EXPECT_EQ(failureOfRun<Error>(types(1), errorReply(code, "why")),
                  "Unknown error code: " + std::to_string(code) + ": why");
}

TEST_F(CallExchangeFailure, GivesTheLockingUserAlone) {
    try {
        run(types(1), errorReply(1001, "alice@bench"));
        FAIL() << "no exception";
    } catch (const TAVO::LockError& error) {
        EXPECT_EQ(error.lockingUser(), "alice@bench");
    }
}

TEST_F(CallExchangeFailure, AcceptsAnEmptyMessageAndBytesBehindIt) {
    const auto errorBlock = block(joined({u32(0), u32(1000), u32(0), {1, 2, 3}}));
    EXPECT_EQ(failureOfRun<TAVO::ConfigurationError>(types(1), joined({u32(0), errorBlock, u32(0)})), "");
}

TEST_F(CallExchangeFailure, KeepsTheResultsBeforeADeviceError) {
    const auto batch = types(5);
    batch[4]->setResult({77, nullptr});
    EXPECT_EQ(failureOfRun<Error>(batch, errorReply(1010, "hot", {typeResult("a"), typeResult("b")})),
              "Unknown error code: 1010: hot");
    EXPECT_EQ(resultsSet(batch), (std::vector{true, true, false, false, true}));
    EXPECT_EQ(batch[4]->returnCode(), 77);
}

TEST_F(CallExchangeFailure, LeavesResultsBeyondTheBatchUnread) {
    const auto batch = types(1);
    EXPECT_EQ(
        failureOfRun<SpecificationError>(batch, errorReply(1002, "why", {typeResult("a"), typeResult("b")})),
        "why");
    EXPECT_TRUE(batch[0]->isResultSet());
    EXPECT_EQ(transport.reply.size() - transport.received, block(typeResult("b")).size());
}

struct Blame {
    std::uint32_t results;
    std::size_t position;
};

void PrintTo(const Blame& blame, std::ostream* out) {
    *out << blame.results << " results blame " << blame.position;
}

class FailedExecution : public CallExchangeFailure, public testing::WithParamInterface<Blame> {};

TEST_P(FailedExecution, IsBlamedOnTheMethodOfTheLastResult) {
    const auto batch = types(5);
    auto reply = joined({u32(0), deviceError(1006, "stuck"), u32(GetParam().results)});
    for (std::uint32_t i = 0; i < std::min(GetParam().results, 5u); ++i)
        reply = joined({reply, block(typeResult("x"))});
    try {
        run(batch, reply);
        FAIL() << "no exception";
    } catch (const TAVO::ExecutionError& error) {
        EXPECT_EQ(error.failedMethodIndex(), GetParam().position);
        EXPECT_EQ(error.failedMethod(), batch[GetParam().position]);
        EXPECT_STREQ(error.what(), "Failed to execute thing.type: stuck");
    }
    for (std::size_t i = 0; i < 5; ++i)
        EXPECT_EQ(batch[i]->isResultSet(), i < GetParam().results) << i;
}

INSTANTIATE_TEST_SUITE_P(Counts, FailedExecution,
                         testing::Values(Blame{2, 1}, Blame{1, 0}, Blame{5, 4}, Blame{0, 0}, Blame{6, 4},
                                         Blame{0xFFFFFFFF, 4}));

TEST_F(CallExchangeFailure, HasNobodyToBlameInAnEmptyBatch) {
    EXPECT_EQ(failureOfRun<Error>({}, errorReply(1006, "stuck")), "stuck");
    EXPECT_EQ(failureOfRun<Error>({}, joined({u32(0), deviceError(1006, "stuck"), u32(3)})), "stuck");
}

TEST_F(CallExchangeFailure, RefusesAnErrorBlockThatIsShortAtAnyPlace) {
    const auto whole = joined({u32(0), u32(1000), text("why")});
    for (std::size_t size = 1; size < whole.size(); ++size) {
        const Bytes cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
        EXPECT_EQ(failureOfRun<Error>(types(1), joined({u32(0), block(cut)})),
                  "Could not read Error from device")
            << size;
    }
}

TEST_F(CallExchangeFailure, RefusesAnErrorMessageLongerThanItsBlock) {
    for (const std::uint32_t length : {4u, 0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFFu}) {
        const support::AllocationMeter meter;
        EXPECT_EQ(failureOfRun<Error>(
                      types(1), joined({u32(0), block(joined({u32(0), u32(1000), u32(length), {1, 2, 3}}))})),
                  "Could not read Error from device");
        EXPECT_LT(meter.largest(), 100u * 1024);
    }
}

// Results.

const std::string shortResult =
    "Error decoding TAVOX return values in call to thing.type: Could not read Result "
    "from device for method: thing.type";

TEST_F(CallExchangeFailure, RefusesAResultThatIsShortAtAnyPlaceAndStoresNone) {
    const auto whole = typeResult("abc");
    for (std::size_t size = 0; size < whole.size(); ++size) {
        const auto batch = types(3);
        const Bytes cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
        EXPECT_EQ(failureOfRun<SpecificationError>(batch, replyWith({whole, cut, whole})), shortResult)
            << size;
        EXPECT_EQ(resultsSet(batch), (std::vector{true, false, false}));
        transport.received = transport.reply.size();
    }
}

TEST_F(CallExchangeFailure, LeavesTheFormerResultInAMethodWhoseNextOneIsShort) {
    const auto method = type();
    run({method}, replyWith({typeResult("former")}));
    EXPECT_EQ(failureOfRun<SpecificationError>({method}, replyWith({result(0)})), shortResult);
    EXPECT_EQ(method->value().type, "former");
}

TEST_F(CallExchangeFailure, NamesTheMethodWhoseDecoderThrows) {
    const Batch batch{type(), named("throwingDecoder"), type()};
    EXPECT_EQ(
        failureOfRun<SpecificationError>(batch, replyWith({typeResult("a"), result(0), typeResult("c")})),
        "Error decoding TAVOX return values in call to thing.throwingDecoder: no such colour");
    EXPECT_EQ(resultsSet(batch), (std::vector{true, false, false}));
}

TEST_F(CallExchangeFailure, ReportsABadResultRatherThanTheDeviceErrorBeforeIt) {
    EXPECT_EQ(failureOfRun<SpecificationError>(types(1), errorReply(1000, "why", {result(0)})), shortResult);
}

// The transport.

TEST_F(CallExchangeFailure, PassesOnAFailureOfTheTransportAtEveryOperationAndKeepsEarlierResults) {
    const auto reply = joined({block({9}), u32(0), u32(2), block(typeResult("a")), block(typeResult("b"))});
    std::size_t operation = 0;
    std::vector<std::size_t> stored;
    for (;; ++operation) {
        support::ScriptedTransport failing(reply);
        failing.failingOperation = operation;
        TAVO::CallExchange fragile(failing);
        const auto batch = types(2);
        const auto failure = failureOf<TAVO::NetworkError>([&] { fragile.run(0, batch); });
        const auto set = resultsSet(batch);
        stored.push_back(static_cast<std::size_t>(std::count(set.begin(), set.end(), true)));
        if (failure == "no exception")
            break;
        EXPECT_EQ(failure, "broken");
        EXPECT_EQ(failing.sends, operation == 0 ? 0u : 1u);
    }
    // send; status size, status, error size, count; two results of size and block each; then none fails.
    EXPECT_EQ(stored, (std::vector<std::size_t>{0, 0, 0, 0, 0, 0, 0, 1, 1, 2}));
}

TEST_F(CallExchangeFailure, PassesOnTheEndOfTheReplyAtEveryByte) {
    const auto whole = errorReply(1006, "stuck", {typeResult("a"), typeResult("b")});
    const auto firstEnds = whole.size() - block(typeResult("b")).size();
    for (std::size_t size = 0; size < whole.size(); ++size) {
        support::ScriptedTransport cut(
            Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size)));
        TAVO::CallExchange fragile(cut);
        const auto batch = types(2);
        EXPECT_EQ(failureOf<TAVO::NetworkError>([&] { fragile.run(0, batch); }), "closed") << size;
        EXPECT_EQ(batch[0]->isResultSet(), size >= firstEnds) << size;
        EXPECT_FALSE(batch[1]->isResultSet()) << size;
    }
}

// Sizes that the peer announces and does not keep.

class AnnouncedBlock
    : public CallExchangeFailure,
      public testing::WithParamInterface<std::tuple<std::string, std::uint32_t, std::size_t>> {};

TEST_P(AnnouncedBlock, TakesNoMoreMemoryThanTwiceWhatArrives) {
    const auto& [field, size, arriving] = GetParam();
    auto reply = joined({u32(size), Bytes(arriving, 0xFF)});
    if (field == "error")
        reply = joined({u32(0), reply});
    if (field == "result")
        reply = joined({u32(0), u32(0), u32(1), reply});
    const auto batch = types(1);
    const support::AllocationMeter meter;
    EXPECT_EQ(failureOfRun<TAVO::NetworkError>(batch, reply), "closed");
    EXPECT_LT(meter.largest(), 64u * 1024 + 2 * reply.size());
    EXPECT_FALSE(batch[0]->isResultSet());

    // Receiving a run needs room for it behind what came before.
    std::uint64_t room = 0;
    for (const auto length : transport.runs)
        room += length;
    EXPECT_LE(room, 2 * arriving + 64 * 1024 + 16);
}

INSTANTIATE_TEST_SUITE_P(Fields, AnnouncedBlock,
                         testing::Combine(testing::Values("status", "error", "result"),
                                          testing::Values(1u << 20, 0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFFu),
                                          testing::Values(std::size_t{0}, std::size_t{10},
                                                          std::size_t{300 * 1000})));

} // namespace
