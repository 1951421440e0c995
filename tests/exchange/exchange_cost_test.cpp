#include <chrono>
#include <cstdint>
#include <optional>
#include <ostream>
#include <string>

#include <gtest/gtest.h>

#include <tavo/client/transcode/small_blocks.h>
#include <tavo/client/wire/socket_transport.h>
#include <tests/support/allocation_meter.h>
#include <tests/support/exchange_fixture.h>
#include <tests/support/output_chunks.h>
#include <tests/support/raw_server.h>

namespace {

using support::Bytes;
using support::chunkCapacity;
using support::replyWith;
using support::result;
using support::text;

/// A socket whose peer has answered when the request is sent: the client finds the whole reply.
class AnsweredSocket : public TAVO::Transport {
public:
    void send(const TAVOX::OutputStream::Chunks& request) override {
        socket.send(request);
        peer.write(reply);
    }
    void receiveAll(std::uint8_t* buffer, std::uint64_t length) override {
        socket.receiveAll(buffer, length);
    }

    support::GuardedListener listener;
    TAVO::SocketTransport socket{"127.0.0.1", listener.portText()};
    support::RawConnection peer{listener.accept()};
    Bytes reply;
};

struct Cost {
    std::uint64_t polls = 0;
    std::uint64_t sends = 0;
    std::uint64_t receives = 0;
    std::size_t allocations = 0;
    bool operator==(const Cost&) const = default;
};

void PrintTo(const Cost& cost, std::ostream* out) {
    *out << cost.polls << " polls, " << cost.sends << " sends, " << cost.receives << " receives, "
         << cost.allocations << " allocations";
}

/// What one exchange asks of the system, once the connection is in use. Whoever makes it ask for more has to
/// say here why.
class ExchangeCost : public support::ExchangeFixture {
protected:
    Cost costOf(const Batch& batch, const Bytes& reply) {
        answered.reply = reply;
        for (int i = 0; i < 2; ++i) { // so that the thread keeps the memory of one batch of replies
            exchangeOverSocket.run(0, batch);
            answered.peer.readRequest();
        }

        const auto before = answered.socket.counters();
        Cost cost;
        {
            const support::AllocationMeter meter;
            exchangeOverSocket.run(0, batch);
            cost.allocations = meter.count();
        }
        answered.peer.readRequest();
        const auto& after = answered.socket.counters();
        cost.polls = after.polls - before.polls;
        cost.sends = after.sends - before.sends;
        cost.receives = after.receives - before.receives;
        return cost;
    }

    static Bytes replyOf(std::size_t count, const Bytes& resultBlock) {
        auto reply = support::joined(
            {support::u32(0), support::u32(0), support::u32(static_cast<std::uint32_t>(count))});
        for (std::size_t i = 0; i < count; ++i) {
            const auto block = support::block(resultBlock);
            reply.insert(reply.end(), block.begin(), block.end());
        }
        return reply;
    }

    /// Of the calls that `make` builds.
    template <class Make>
    static Batch batchOf(std::size_t count, Make make) {
        Batch batch;
        for (std::size_t i = 0; i < count; ++i)
            batch.push_back(make());
        return batch;
    }

    AnsweredSocket answered;
    TAVO::CallExchange exchangeOverSocket{answered};
};

const std::string textBeyondTheString(40, 'x'); // too long to lie within a string

TEST_F(ExchangeCost, OfACallWithoutReplyIsThreeSystemCallsAndNoMemory) {
    EXPECT_EQ(costOf({unreserve()}, replyWith({result(0)})), (Cost{1, 1, 1, 0}));
    EXPECT_EQ(costOf({reserve("who", "why")}, replyWith({result(0)})), (Cost{1, 1, 1, 0}));
}

/// A record comes from the blocks that the thread keeps, where it keeps any.
const std::size_t memoryOfARecord = TAVO::TAVOXTranscode::SmallBlocks::areKept() ? 0 : 1;

TEST_F(ExchangeCost, OfACallWithReplyIsTheReplysOwnMemoryBesides) {
    EXPECT_EQ(costOf({type()}, replyWith({typeResult("gauge")})), (Cost{1, 1, 1, memoryOfARecord}));
    EXPECT_EQ(costOf({type()}, replyWith({typeResult(textBeyondTheString)})),
              (Cost{1, 1, 1, memoryOfARecord + 1}));
}

TEST_F(ExchangeCost, OfATimeLimitIsOneWaitBeforeTheReceive) {
    answered.socket.setTimeLimit(std::chrono::hours(1));
    EXPECT_EQ(costOf({unreserve()}, replyWith({result(0)})), (Cost{2, 1, 1, 0}));
    answered.socket.setTimeLimit(std::nullopt);
    EXPECT_EQ(costOf({unreserve()}, replyWith({result(0)})), (Cost{1, 1, 1, 0}));
}

TEST_F(ExchangeCost, OfABatchIsAsManySystemCallsAsOfOneCall) {
    const auto statuses = batchOf(1000, [&] { return unreserve(); });
    EXPECT_EQ(costOf(statuses, replyOf(1000, result(0))), (Cost{1, 1, 1, 0}));
    const auto replies = batchOf(500, [&] { return type(); });
    EXPECT_EQ(costOf(replies, replyOf(500, typeResult(textBeyondTheString))),
              (Cost{1, 1, 1, (memoryOfARecord + 1) * 500}));
}

TEST_F(ExchangeCost, OfARequestBeyondAChunkIsNoMemoryForTheChunksThatAreKept) {
    constexpr auto besideText = 8 + 12 + 1 + 4 + 4; // head, head of the call, flag, lengths of both texts
    const std::string fillsTheChunk(chunkCapacity - besideText, 'x');
    EXPECT_EQ(costOf({reserve(fillsTheChunk, "")}, replyWith({result(0)})), (Cost{1, 1, 1, 0}));
    EXPECT_EQ(costOf({reserve(fillsTheChunk + "x", "")}, replyWith({result(0)})), (Cost{1, 1, 1, 0}));
    EXPECT_EQ(costOf({reserve(fillsTheChunk, "x")}, replyWith({result(0)})), (Cost{1, 1, 1, 0}));
}

TEST_F(ExchangeCost, OfARequestOfManyChunksIsOnePieceOfMemoryForEachThatIsNotKept) {
    constexpr auto kept = TAVOX::OutputStream::SpareChunks::most;
    const auto chunks = [this](std::size_t count) {
        return batchOf(count, [this] { return reserve(std::string(chunkCapacity - 30, 'x'), ""); });
    };
    EXPECT_EQ(costOf(chunks(1 + kept), replyOf(1 + kept, result(0))), (Cost{1, 1, 1, 0}));
    EXPECT_EQ(costOf(chunks(4 + kept), replyOf(4 + kept, result(0))), (Cost{1, 1, 1, 3}));
}

TEST_F(ExchangeCost, OfBuildingAMethodWithoutParametersIsOnePieceOfMemory) {
    const auto first = unreserve(); // which makes what all Methods of that call share
    const support::AllocationMeter meter;
    const auto method = unreserve();
    EXPECT_LE(meter.count(), 1u);
}

} // namespace
