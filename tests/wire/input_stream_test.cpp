#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>
#include <span>
#include <stdexcept>
#include <vector>

#include <gtest/gtest.h>

#include <tavo/client/wire/input_stream.h>

namespace {

using TAVOX::InputStream;

template <std::size_t Size>
InputStream over(const std::array<std::uint8_t, Size>& bytes) {
    return {bytes.data(), Size};
}

TEST(InputStream, StartsWithTheWholeBlockUnread) {
    const std::array<std::uint8_t, 3> bytes{1, 2, 3};
    const auto in = over(bytes);
    EXPECT_EQ(in.size(), 3u);
    EXPECT_EQ(in.remaining(), 3u);
    EXPECT_FALSE(in.failed());
}

TEST(InputStream, ReadsBigEndianNumbersOfEveryWidthWithoutPadding) {
    const std::array<std::uint8_t, 14> bytes{0xA5, 0x12, 0x34, 0x56, 0x78, 0x01, 0x23,
                                             0x45, 0x67, 0x89, 0xAB, 0xCD, 0xEF, 0x01};
    auto in = over(bytes);
    EXPECT_EQ(in.readByte(), 0xA5);
    EXPECT_EQ(in.readInt32(), 0x12345678);
    EXPECT_EQ(in.readInt64(), 0x0123456789ABCDEF);
    EXPECT_TRUE(in.readBool());
    EXPECT_EQ(in.remaining(), 0u);
    EXPECT_EQ(in.size(), 14u);
    EXPECT_FALSE(in.failed());
}

TEST(InputStream, TakesTheTopBitAsSignOfASignedNumber) {
    const std::array<std::uint8_t, 12> bytes{0xFF, 0xFF, 0xFF, 0xFE, 0x80, 0, 0, 0, 0, 0, 0, 0};
    auto in = over(bytes);
    EXPECT_EQ(in.readInt32(), -2);
    EXPECT_EQ(in.readInt64(), std::numeric_limits<std::int64_t>::min());
}

TEST(InputStream, TakesAnyByteButZeroAsTrue) {
    const std::array<std::uint8_t, 4> bytes{0, 1, 2, 0xFF};
    auto in = over(bytes);
    EXPECT_FALSE(in.readBool());
    EXPECT_TRUE(in.readBool());
    EXPECT_TRUE(in.readBool());
    EXPECT_TRUE(in.readBool());
    EXPECT_FALSE(in.failed());
}

TEST(InputStream, FailsForGoodWhenThreeBytesAreLeftForANumberOfFour) {
    const std::array<std::uint8_t, 3> bytes{1, 2, 3};
    auto in = over(bytes);
    EXPECT_EQ(in.readInt32(), 0);
    EXPECT_TRUE(in.failed());
    EXPECT_EQ(in.readByte(), 0);
    EXPECT_EQ(in.remaining(), 3u);
}

TEST(InputStream, FailsForGoodWhenSevenBytesAreLeftForANumberOfEight) {
    const std::array<std::uint8_t, 7> bytes{1, 2, 3, 4, 5, 6, 7};
    auto in = over(bytes);
    EXPECT_EQ(in.readInt64(), 0);
    EXPECT_TRUE(in.failed());
    EXPECT_EQ(in.readInt32(), 0);
    EXPECT_EQ(in.remaining(), 7u);
}

TEST(InputStream, YieldsZeroAndFalseWhenNothingIsLeft) {
    InputStream forByte(nullptr, 0);
    EXPECT_EQ(forByte.readByte(), 0);
    EXPECT_TRUE(forByte.failed());

    InputStream forBool(nullptr, 0);
    EXPECT_FALSE(forBool.readBool());
    EXPECT_TRUE(forBool.failed());
}

TEST(InputStream, CopiesRawBytesAndMovesOn) {
    const std::array<std::uint8_t, 4> bytes{1, 2, 3, 4};
    auto in = over(bytes);
    std::array<std::uint8_t, 3> copy{};
    in.readRaw(copy.data(), copy.size());
    EXPECT_EQ(copy, (std::array<std::uint8_t, 3>{1, 2, 3}));
    EXPECT_EQ(in.readByte(), 4);
    EXPECT_FALSE(in.failed());
}

TEST(InputStream, CopiesNothingWhenRawBytesAreMissing) {
    const std::array<std::uint8_t, 2> bytes{1, 2};
    auto in = over(bytes);
    std::array<std::uint8_t, 3> copy{9, 9, 9};
    in.readRaw(copy.data(), 3);
    EXPECT_TRUE(in.failed());
    EXPECT_EQ(copy, (std::array<std::uint8_t, 3>{9, 9, 9}));

    in.readRaw(copy.data(), 1);
    EXPECT_EQ(copy, (std::array<std::uint8_t, 3>{9, 9, 9}));
    EXPECT_EQ(in.remaining(), 2u);
}

TEST(InputStream, CopiesNoBytesToNowhereWithoutFailing) {
    const std::array<std::uint8_t, 1> bytes{1};
    auto in = over(bytes);
    in.readRaw(nullptr, 0);
    EXPECT_FALSE(in.failed());
    EXPECT_EQ(in.remaining(), 1u);
}

TEST(InputStream, HandsOutViewsIntoTheBlock) {
    const std::array<std::uint8_t, 4> bytes{1, 2, 3, 4};
    auto in = over(bytes);
    EXPECT_EQ(in.readSpan(3), bytes.data());
    EXPECT_EQ(in.readSpan(1), bytes.data() + 3);
    EXPECT_FALSE(in.failed());
}

TEST(InputStream, YieldsTheCursorForAnEmptyViewAtTheEnd) {
    const std::array<std::uint8_t, 2> bytes{1, 2};
    auto in = over(bytes);
    in.readSpan(2);
    EXPECT_EQ(in.readSpan(0), bytes.data() + 2);
    EXPECT_FALSE(in.failed());
}

TEST(InputStream, YieldsNoViewThatIsLongerThanWhatIsLeft) {
    const std::array<std::uint8_t, 2> bytes{1, 2};
    for (const std::uint64_t count : {std::uint64_t{3}, std::numeric_limits<std::uint64_t>::max()}) {
        auto in = over(bytes);
        EXPECT_EQ(in.readSpan(count), nullptr);
        EXPECT_TRUE(in.failed());
        EXPECT_EQ(in.readSpan(0), nullptr);
        EXPECT_EQ(in.remaining(), 2u);
    }
}

TEST(InputStream, YieldsOnlyZeroAfterItsUserFailsIt) {
    const std::array<std::uint8_t, 20> bytes{1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1};
    auto in = over(bytes);
    in.fail();
    EXPECT_TRUE(in.failed());
    EXPECT_EQ(in.readByte(), 0);
    EXPECT_FALSE(in.readBool());
    EXPECT_EQ(in.readInt32(), 0);
    EXPECT_EQ(in.readInt64(), 0);
    EXPECT_EQ(in.readSpan(1), nullptr);
    EXPECT_EQ(in.remaining(), 20u);
}

TEST(InputStream, TellsWhereTheValueBeginsAtWhichItHasFailed) {
    const std::array<std::uint8_t, 7> bytes{1, 2, 3, 4, 5, 6, 7};
    auto atNumber = over(bytes);
    atNumber.readInt32();
    atNumber.readInt32();
    EXPECT_EQ(atNumber.failedAt(), 4u);
    atNumber.fail(2);
    EXPECT_EQ(atNumber.failedAt(), 4u) << "the first time counts";

    auto atSpan = over(bytes);
    atSpan.readByte();
    EXPECT_EQ(atSpan.readSpan(7), nullptr);
    EXPECT_EQ(atSpan.failedAt(), 1u);

    auto byItsUser = over(bytes);
    byItsUser.readByte();
    byItsUser.readInt32();
    byItsUser.fail(4);
    EXPECT_EQ(byItsUser.failedAt(), 1u);
}

/// Has so many bytes, all 7, and then fails.
class BreakingSource : public TAVOX::InputSource {
public:
    explicit BreakingSource(std::uint64_t bytes)
        : left_(bytes) {}

    std::span<const std::uint8_t> gather(std::uint64_t count) override {
        take(count);
        gathered_.assign(static_cast<std::size_t>(count), 7);
        return gathered_;
    }
    void receive(std::uint8_t* destination, std::uint64_t count) override {
        take(count);
        std::fill_n(destination, count, std::uint8_t{7});
    }

private:
    void take(std::uint64_t count) {
        if (count > left_)
            throw std::range_error("broken");
        left_ -= count;
    }

    std::uint64_t left_;
    std::vector<std::uint8_t> gathered_;
};

TEST(InputStream, ReadsABlockWhileItArrives) {
    BreakingSource source(9);
    InputStream in(source, 9);
    EXPECT_EQ(in.readInt32(), 0x07070707);
    EXPECT_EQ(in.remaining(), 5u);
    EXPECT_EQ(in.arrived(), 0u);
    in.awaitRest();
    EXPECT_EQ(in.arrived(), 5u);
    EXPECT_EQ(in.readInt32(), 0x07070707);
    EXPECT_EQ(in.readInt32(), 0);
    EXPECT_TRUE(in.failed());
    EXPECT_EQ(in.failedAt(), 8u);
}

TEST(InputStream, AsksItsSourceForNoMoreThanTheBlockHas) {
    BreakingSource source(0);
    InputStream in(source, 3);
    EXPECT_EQ(in.readInt32(), 0);
    EXPECT_TRUE(in.failed());
    std::uint8_t untouched = 1;
    in.readRaw(&untouched, 1);
    in.awaitRest();
    EXPECT_EQ(untouched, 1);
}

TEST(InputStream, PassesOnWhatItsSourceThrows) {
    BreakingSource source(4);
    InputStream in(source, 100);
    EXPECT_EQ(in.readInt32(), 0x07070707);
    std::uint8_t raw[8] = {};
    EXPECT_THROW(in.readRaw(raw, sizeof raw), std::range_error);
    EXPECT_THROW(in.readSpan(8), std::range_error);
    EXPECT_THROW(in.readInt64(), std::range_error);
    EXPECT_THROW(in.awaitRest(), std::range_error);
    EXPECT_FALSE(in.failed());
}

} // namespace
