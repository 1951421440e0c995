#include <cstdint>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

#include <pthread.h>

#include <gtest/gtest.h>

#include <tavo/client/wire/output_stream.h>
#include <tests/support/allocation_meter.h>
#include <tests/support/output_chunks.h>
#include <tests/support/wire_bytes.h>

namespace {

using support::AllocationMeter;
using support::Bytes;
using support::chunkSizes;
using support::NothrowLimit;
using support::pattern;
using support::written;
using TAVOX::OutputStream;

constexpr auto capacity = support::chunkCapacity;

void fill(OutputStream& out, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i)
        out.writeByte(0xEE);
}

TEST(OutputStream, IsEmptyAtFirst) {
    const OutputStream out;
    EXPECT_EQ(out.total(), 0u);
    EXPECT_FALSE(out.failed());
    EXPECT_EQ(chunkSizes(out), std::vector<std::size_t>{0});
}

TEST(OutputStream, WritesBigEndianNumbersWithoutPadding) {
    OutputStream out;
    out.writeByte(0xA5);
    out.writeUInt32(0x12345678);
    out.writeInt64(0x0123456789ABCDEF);
    out.writeBool(true);
    out.writeBool(false);
    EXPECT_EQ(written(out),
              (Bytes{0xA5, 0x12, 0x34, 0x56, 0x78, 0x01, 0x23, 0x45, 0x67, 0x89, 0xAB, 0xCD, 0xEF, 1, 0}));
    EXPECT_EQ(out.total(), 15u);
}

TEST(OutputStream, WritesNegativeNumbersAsTwosComplement) {
    OutputStream out;
    out.writeUInt32(static_cast<std::uint32_t>(-2));
    out.writeInt64(-2);
    EXPECT_EQ(written(out), (Bytes{0xFF, 0xFF, 0xFF, 0xFE, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFE}));
}

TEST(OutputStream, WritesABlockOfBytesBehindItsLength) {
    OutputStream out;
    const Bytes bytes{'h', 'e', 0, 0xFF};
    out.writeBytes(bytes.size(), bytes.data());
    EXPECT_EQ(written(out), (Bytes{0, 0, 0, 4, 'h', 'e', 0, 0xFF}));
}

TEST(OutputStream, WritesOnlyTheLengthOfAnEmptyBlock) {
    OutputStream out;
    out.writeBytes(0, nullptr);
    EXPECT_EQ(written(out), (Bytes{0, 0, 0, 0}));
    EXPECT_EQ(out.total(), 4u);
}

TEST(OutputStream, AllocatesNothingForARequestThatFitsInOneChunk) {
    const AllocationMeter meter;
    OutputStream out;
    fill(out, capacity);
    const auto allocations = meter.count();
    EXPECT_EQ(allocations, 0u);
    EXPECT_EQ(chunkSizes(out), std::vector<std::size_t>{capacity});
}

TEST(OutputStream, AllocatesOncePerFurtherChunk) {
    const auto bytes = pattern(3 * capacity);
    const AllocationMeter meter;
    OutputStream out;
    out.writeBytes(bytes.size(), bytes.data());
    const auto allocations = meter.count();
    EXPECT_EQ(allocations, 3u);
    EXPECT_EQ(out.chunks().size(), 4u);
}

TEST(OutputStream, SplitsALongRunBetweenChunks) {
    OutputStream out;
    const auto bytes = pattern(30000);
    out.writeBytes(bytes.size(), bytes.data());
    out.writeByte(0x77);

    Bytes expected{0x00, 0x00, 0x75, 0x30};
    expected.insert(expected.end(), bytes.begin(), bytes.end());
    expected.push_back(0x77);
    EXPECT_EQ(written(out), expected);
    EXPECT_EQ(chunkSizes(out), (std::vector<std::size_t>{capacity, 30000 + 4 + 1 - capacity}));
    EXPECT_EQ(out.total(), 30005u);
}

TEST(OutputStream, SpreadsARunOverAsManyChunksAsItNeeds) {
    OutputStream out;
    const auto bytes = pattern(3 * capacity);
    out.writeBytes(bytes.size(), bytes.data());
    EXPECT_EQ(chunkSizes(out), (std::vector<std::size_t>{capacity, capacity, capacity, 4}));
    auto all = written(out);
    all.erase(all.begin(), all.begin() + 4);
    EXPECT_EQ(all, bytes);
}

TEST(OutputStream, StartsNoChunkBehindARunThatEndsWithItsChunk) {
    OutputStream out;
    const auto bytes = pattern(capacity - 4);
    out.writeBytes(bytes.size(), bytes.data());
    EXPECT_EQ(chunkSizes(out), std::vector<std::size_t>{capacity});
}

TEST(OutputStream, PutsALengthThatJustFitsInTheOldChunkAndItsBytesInTheNext) {
    OutputStream out;
    fill(out, capacity - 4);
    const std::uint8_t byte = 0x42;
    out.writeBytes(1, &byte);
    EXPECT_EQ(chunkSizes(out), (std::vector<std::size_t>{capacity, 1}));
    EXPECT_EQ(out.chunks()[1][0], 0x42);
}

TEST(OutputStream, LeavesThreeBytesEmptyRatherThanSplitANumberOfFour) {
    OutputStream out;
    fill(out, capacity - 3);
    out.writeUInt32(0x01020304);
    EXPECT_EQ(chunkSizes(out), (std::vector<std::size_t>{capacity - 3, 4}));
    const auto second = out.chunks()[1];
    EXPECT_EQ(Bytes(second.begin(), second.end()), (Bytes{1, 2, 3, 4}));
    EXPECT_EQ(out.total(), capacity + 1);
}

TEST(OutputStream, LeavesSevenBytesEmptyRatherThanSplitANumberOfEight) {
    OutputStream out;
    fill(out, capacity - 7);
    out.writeInt64(1);
    EXPECT_EQ(chunkSizes(out), (std::vector<std::size_t>{capacity - 7, 8}));
}

TEST(OutputStream, FillsAChunkToItsEndWithNumbersThatJustFit) {
    OutputStream out;
    fill(out, capacity - 12);
    out.writeInt64(1);
    out.writeUInt32(2);
    EXPECT_EQ(chunkSizes(out), std::vector<std::size_t>{capacity});
}

TEST(OutputStream, StartsAChunkForAByteOnlyWhenTheOldOneIsFull) {
    OutputStream out;
    fill(out, capacity - 1);
    out.writeByte(1);
    EXPECT_EQ(out.chunks().size(), 1u);
    out.writeBool(true);
    EXPECT_EQ(chunkSizes(out), (std::vector<std::size_t>{capacity, 1}));
}

TEST(OutputStream, CountsInASizedBlockWhatIsWrittenInIt) {
    OutputStream out;
    out.writeUInt32(7);
    out.beginSizedBlock();
    const std::string text = "hello";
    out.writeBytes(text.size(), reinterpret_cast<const std::uint8_t*>(text.data()));
    out.endSizedBlock();
    out.writeByte(8);
    EXPECT_EQ(written(out), (Bytes{0, 0, 0, 7, 0, 0, 0, 9, 0, 0, 0, 5, 'h', 'e', 'l', 'l', 'o', 8}));
    EXPECT_EQ(out.total(), 18u);
}

TEST(OutputStream, CountsEveryKindOfValueInASizedBlock) {
    OutputStream out;
    out.beginSizedBlock();
    out.writeByte(1);
    out.writeBool(true);
    out.writeUInt32(1);
    out.writeInt64(1);
    out.endSizedBlock();
    const auto bytes = written(out);
    EXPECT_EQ(Bytes(bytes.begin(), bytes.begin() + 4), (Bytes{0, 0, 0, 14}));
}

TEST(OutputStream, WritesZeroAsSizeOfAnEmptyBlock) {
    OutputStream out;
    out.beginSizedBlock();
    out.endSizedBlock();
    EXPECT_EQ(written(out), (Bytes{0, 0, 0, 0}));
    EXPECT_EQ(out.total(), 4u);
}

TEST(OutputStream, CountsEachSizedBlockAnew) {
    OutputStream out;
    out.beginSizedBlock();
    out.writeByte(1);
    out.endSizedBlock();
    out.writeByte(2);
    out.beginSizedBlock();
    out.writeUInt32(3);
    out.endSizedBlock();
    EXPECT_EQ(written(out), (Bytes{0, 0, 0, 1, 1, 2, 0, 0, 0, 4, 0, 0, 0, 3}));
}

TEST(OutputStream, CountsASizedBlockAcrossChunks) {
    OutputStream out;
    out.beginSizedBlock();
    const auto bytes = pattern(30000);
    out.writeBytes(bytes.size(), bytes.data());
    out.endSizedBlock();
    const auto first = out.chunks()[0];
    EXPECT_EQ(Bytes(first.begin(), first.begin() + 8), (Bytes{0, 0, 0x75, 0x34, 0, 0, 0x75, 0x30}));
}

TEST(OutputStream, LeavesThreeBytesEmptyRatherThanSplitTheSizeOfABlock) {
    OutputStream out;
    fill(out, capacity - 3);
    out.beginSizedBlock();
    out.writeByte(9);
    out.endSizedBlock();
    EXPECT_EQ(chunkSizes(out), (std::vector<std::size_t>{capacity - 3, 5}));
    const auto second = out.chunks()[1];
    EXPECT_EQ(Bytes(second.begin(), second.end()), (Bytes{0, 0, 0, 1, 9}));
}

TEST(OutputStream, DoesNotCountTheEmptyEndOfAChunkInASizedBlock) {
    OutputStream out;
    fill(out, capacity - 3 - 4);
    out.beginSizedBlock();
    out.writeUInt32(1);
    out.endSizedBlock();
    const auto first = out.chunks()[0];
    EXPECT_EQ(chunkSizes(out), (std::vector<std::size_t>{capacity - 3, 4}));
    EXPECT_EQ(Bytes(first.end() - 4, first.end()), (Bytes{0, 0, 0, 4}));
}

TEST(OutputStream, IgnoresTheEndOfABlockThatWasNeverBegun) {
    OutputStream out;
    out.writeUInt32(5);
    out.endSizedBlock();
    EXPECT_EQ(written(out), (Bytes{0, 0, 0, 5}));
}

TEST(OutputStream, FailsForGoodWhenMemoryForAChunkCannotBeHad) {
    OutputStream out;
    fill(out, capacity);
    {
        const NothrowLimit none(0);
        out.writeByte(1);
    }
    EXPECT_TRUE(out.failed());

    const std::uint8_t byte = 1;
    out.writeByte(1);
    out.writeBool(true);
    out.writeUInt32(1);
    out.writeInt64(1);
    out.writeBytes(1, &byte);
    out.beginSizedBlock();
    out.endSizedBlock();
    EXPECT_EQ(out.total(), capacity);
    EXPECT_EQ(chunkSizes(out), std::vector<std::size_t>{capacity});
}

TEST(OutputStream, StopsALongRunWhereMemoryEnds) {
    const NothrowLimit one(1);
    OutputStream out;
    const auto bytes = pattern(3 * capacity);
    out.writeBytes(bytes.size(), bytes.data());
    EXPECT_TRUE(out.failed());
    EXPECT_EQ(chunkSizes(out), (std::vector<std::size_t>{capacity, capacity}));
}

TEST(OutputStream, FreesALongChainOnASmallStack) {
    auto out = std::make_unique<OutputStream>();
    const auto bytes = pattern(5000 * capacity);
    out->writeBytes(bytes.size(), bytes.data());
    ASSERT_EQ(out->chunks().size(), 5001u);

    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    ASSERT_EQ(pthread_attr_setstacksize(&attributes, 128 * 1024), 0);
    pthread_t thread{};
    const auto destroy = [](void* stream) -> void* {
        delete static_cast<OutputStream*>(stream);
        return nullptr;
    };
    ASSERT_EQ(pthread_create(&thread, &attributes, destroy, out.release()), 0);
    EXPECT_EQ(pthread_join(thread, nullptr), 0);
    pthread_attr_destroy(&attributes);
}

TEST(OutputStream, ListsItsChunksTheSameByPositionAndInOrder) {
    OutputStream out;
    const auto bytes = pattern(60000);
    out.writeBytes(bytes.size(), bytes.data());
    const auto chunks = out.chunks();
    std::size_t index = 0;
    for (const auto chunk : chunks)
        EXPECT_EQ(chunk.data(), chunks[index++].data());
    EXPECT_EQ(index, chunks.size());
    EXPECT_EQ(index, 3u);
}

TEST(OutputStream, IsNeitherCopiedNorMoved) {
    EXPECT_FALSE(std::is_copy_constructible_v<OutputStream>);
    EXPECT_FALSE(std::is_move_constructible_v<OutputStream>);
}

} // namespace
