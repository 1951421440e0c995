#include <string>

#include <gtest/gtest.h>

#include <tavo/trace/tcp_assembler.h>
#include <tests/support/wire_bytes.h>

namespace {

using TAVO::trace::Segment;
using TAVO::trace::TcpAssembler;

/// What is delivered, each piece behind the number of its side.
class AssembledStream : public testing::Test {
protected:
    void take(std::size_t side, std::uint32_t sequence, const std::string& text,
              std::uint32_t acknowledged = 0) {
        const auto bytes = support::bytesOf(text);
        Segment segment;
        segment.sequence = sequence;
        segment.hasAcknowledged = acknowledged != 0;
        segment.acknowledged = acknowledged;
        segment.payload = bytes;
        assembler.take(side, segment, {});
    }
    void begin(std::size_t side, std::uint32_t sequence) {
        Segment segment;
        segment.isSyn = true;
        segment.sequence = sequence;
        assembler.take(side, segment, {});
    }

    std::string delivered;
    TcpAssembler assembler{[this](std::size_t side, std::span<const std::uint8_t> bytes, auto) {
        delivered += std::to_string(side) + std::string(bytes.begin(), bytes.end());
    }};
};

TEST_F(AssembledStream, HasEachByteOnceAndInOrder) {
    begin(0, 0xFFFFFFFD); // the numbers wrap around
    take(0, 0xFFFFFFFE, "ab");
    take(0, 2, "ef");
    take(0, 0xFFFFFFFE, "ab");
    EXPECT_EQ(delivered, "0ab");
    EXPECT_TRUE(assembler.lacksBytes());
    take(0, 0xFFFFFFFF, "bcde");
    EXPECT_EQ(delivered, "0ab0cde0f");
    EXPECT_FALSE(assembler.lacksBytes());
}

TEST_F(AssembledStream, HasNoAnswerBeforeWhatItAcknowledges) {
    begin(0, 99);
    begin(1, 499);
    take(1, 500, "answer", 103);
    EXPECT_EQ(delivered, "");
    take(0, 100, "ask");
    EXPECT_EQ(delivered, "0ask1answer");
    take(1, 506, "late", 110);
    assembler.finish();
    EXPECT_EQ(delivered, "0ask1answer1late");
}

} // namespace
