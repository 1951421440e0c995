#include <algorithm>
#include <memory>
#include <stdexcept>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include <tavo/client/transcode/block_receiver.h>
#include <tavo/client/transcode/codec.h>
#include <tests/support/exchange_fixture.h>
#include <tests/support/failure_text.h>

namespace {

using support::Bytes;
using support::failureOf;
using support::joined;
using support::replyWith;
using support::result;
using support::u32;
using TAVO::NetworkError;

struct TwoBlocks : TAVO::dto::reply_packet {
    Bytes first;
    std::string text;
    Bytes second;
    static constexpr auto fields() {
        return std::tuple{TAVO::dto::Field{"first", &TwoBlocks::first},
                          TAVO::dto::Field{"text", &TwoBlocks::text},
                          TAVO::dto::Field{"second", &TwoBlocks::second}};
    }
};

/// Keeps the blocks in memory of its own, and marks their fields.
class Receiver : public TAVO::BlockReceiver {
public:
    void receive(TAVOX::InputStream& in, std::uint64_t length, Bytes& block) override {
        EXPECT_TRUE(block.empty());
        Bytes received(static_cast<std::size_t>(length));
        in.readRaw(received.data(), length);
        block.assign(1, static_cast<std::uint8_t>(blocks.size()));
        blocks.push_back(std::move(received));
    }

    std::vector<Bytes> blocks;
};

/// Reads a result while it arrives, as the exchange does for the library's own decoders.
class ArrivingBlocks : public testing::Test {
protected:
    class Source : public TAVOX::InputSource {
    public:
        explicit Source(const Bytes& bytes)
            : bytes_(bytes) {}
        std::span<const std::uint8_t> gather(std::uint64_t count) override {
            need(count);
            const auto piece = std::span(bytes_).subspan(taken_, static_cast<std::size_t>(count));
            taken_ += piece.size();
            return piece;
        }
        void receive(std::uint8_t* destination, std::uint64_t count) override {
            const auto piece = gather(count);
            std::copy(piece.begin(), piece.end(), destination);
        }

    private:
        void need(std::uint64_t count) const {
            if (count > bytes_.size() - taken_)
                throw NetworkError("cut");
        }

        const Bytes& bytes_;
        std::size_t taken_ = 0;
    };

    /// @param announced the length of the result, of which `bytes` arrive.
    static TwoBlocks read(const Bytes& bytes, std::uint64_t announced) {
        Source source(bytes);
        TAVOX::InputStream in(source, announced);
        TwoBlocks record;
        TAVO::TAVOXTranscode::readFields(in, record);
        EXPECT_FALSE(in.failed());
        return record;
    }
    static Bytes bytesOf(const Bytes& first, const Bytes& second) {
        return joined(
            {support::block(first), support::text(std::string(80'000, 't')), support::block(second)});
    }
};

const Bytes firstBlock(100'000, 0x11);
const Bytes secondBlock(200'000, 0x22);

TEST_F(ArrivingBlocks, GoToTheReceiverInTheirOrderAndTextsDoNot) {
    const auto bytes = bytesOf(firstBlock, secondBlock);
    Receiver receiver;
    const auto record = read(bytes, bytes.size());
    EXPECT_EQ(receiver.blocks, (std::vector<Bytes>{firstBlock, secondBlock}));
    EXPECT_EQ(record.first, Bytes{0}) << "what the receiver left there";
    EXPECT_EQ(record.second, Bytes{1});
    EXPECT_EQ(record.text, std::string(80'000, 't'));
}

TEST_F(ArrivingBlocks, GoToTheLatestReceiverOfTheThread) {
    const auto bytes = bytesOf(firstBlock, secondBlock);
    Receiver outer;
    {
        Receiver inner;
        EXPECT_EQ(TAVO::BlockReceiver::current(), &inner);
        read(bytes, bytes.size());
        EXPECT_EQ(inner.blocks.size(), 2u);
    }
    EXPECT_EQ(TAVO::BlockReceiver::current(), &outer);
    std::thread([&] {
        EXPECT_EQ(TAVO::BlockReceiver::current(), nullptr);
        EXPECT_EQ(read(bytes, bytes.size()).first, firstBlock);
    }).join();
    EXPECT_TRUE(outer.blocks.empty());
}

TEST_F(ArrivingBlocks, GoToTheLatestReceiverThatIsLeft) {
    const auto bytes = bytesOf(firstBlock, secondBlock);
    auto former = std::make_unique<Receiver>();
    auto later = std::make_unique<Receiver>();
    former.reset();
    read(bytes, bytes.size());
    EXPECT_EQ(later->blocks.size(), 2u);
    later.reset();
    EXPECT_EQ(TAVO::BlockReceiver::current(), nullptr);
}

/// Reads more or less than the block has.
class InexactReceiver : public TAVO::BlockReceiver {
public:
    explicit InexactReceiver(int more)
        : more_(more) {}
    void receive(TAVOX::InputStream& in, std::uint64_t length, Bytes& block) override {
        block.resize(static_cast<std::size_t>(static_cast<std::int64_t>(length) + more_));
        in.readRaw(block.data(), block.size());
    }

private:
    int more_;
};

TEST_F(ArrivingBlocks, AreReadWholeOrEndTheExchange) {
    const auto bytes = bytesOf(firstBlock, secondBlock);
    for (const int more : {-1, 1}) {
        InexactReceiver receiver(more);
        EXPECT_EQ(failureOf<std::logic_error>([&] { read(bytes, bytes.size()); }),
                  "A BlockReceiver has to read the whole block and nothing else.");
    }
}

TEST_F(ArrivingBlocks, GoToTheRecordWithoutAReceiver) {
    const auto bytes = bytesOf(firstBlock, secondBlock);
    { const Receiver gone; }
    const auto record = read(bytes, bytes.size());
    EXPECT_EQ(record.first, firstBlock);
    EXPECT_EQ(record.second, secondBlock);
}

TEST_F(ArrivingBlocks, PassOnTheFailureOfTheConnection) {
    const auto bytes = bytesOf(firstBlock, secondBlock);
    const Bytes cut(bytes.begin(), bytes.end() - 1);
    Receiver receiver;
    EXPECT_EQ(failureOf<NetworkError>([&] { read(cut, bytes.size()); }), "cut");
    EXPECT_EQ(receiver.blocks, std::vector<Bytes>{firstBlock});
}

/// A whole exchange: its long result goes through, its short ones are the records' own.
using ExchangeWithReceiver = support::ExchangeFixture;

TEST_F(ExchangeWithReceiver, HandsOverNothingOfResultsThatAreShortOrTexts) {
    Receiver receiver;
    const auto method = type();
    run({method}, replyWith({typeResult(std::string(300'000, 'x'))}));
    EXPECT_EQ(method->value().type.size(), 300'000u);
    EXPECT_TRUE(receiver.blocks.empty());
}

} // namespace
