#include <cstdint>
#include <vector>

#include <gtest/gtest.h>

#include <tavo/jtag/bit_string.h>

namespace {

using TAVO::jtag::BitString;
using Bytes = std::vector<std::uint8_t>;

BitString pattern(std::size_t size) {
    BitString bits(size, false);
    for (std::size_t bit = 0; bit < size; ++bit)
        bits.set(bit, bit * 7 % 5 < 2);
    return bits;
}

TEST(BitString, UnusedBitsAreZero) {
    EXPECT_EQ(BitString(5, true).bytes(), Bytes{0x1F});
    EXPECT_EQ(BitString(5, Bytes{0xFF, 0xFF}), BitString(5, true));
    EXPECT_EQ(BitString(12, Bytes{0xAB}).bytes(), (Bytes{0xAB, 0x00}));
}

TEST(BitString, ReadsNumbersFromAnyPlace) {
    auto bits = BitString(40, false);
    bits.set(5, true);
    bits.set(36, true);
    EXPECT_EQ(bits.number(5, 32), 0x80000001u);
    EXPECT_TRUE(bits.isAll(6, 36, false));
    EXPECT_FALSE(bits.isAll(6, 37, false));
    bits.set(36, false);
    EXPECT_TRUE(bits.isAll(6, 40, false));
}

TEST(BitString, BitsAreAddedBehindTheLast) {
    for (std::size_t first = 0; first < 20; ++first)
        for (std::size_t more = 0; more < 20; ++more) {
            auto joined = pattern(first);
            joined.append(BitString(more, true));
            auto single = pattern(first);
            for (std::size_t bit = 0; bit < more; ++bit)
                single.append(true);
            ASSERT_EQ(joined, single) << first << " and " << more;
            ASSERT_EQ(joined.size(), first + more);
            for (std::size_t bit = 0; bit < joined.size(); ++bit)
                ASSERT_EQ(joined.at(bit), bit >= first || pattern(first).at(bit)) << first << " and " << more;
        }
}

TEST(BitString, TellsWhetherAPartIsAllAtOneLevel) {
    for (std::size_t first = 0; first < 40; ++first)
        for (auto end = first; end <= 40; ++end) {
            BitString bits(40, false);
            for (auto bit = first; bit < end; ++bit)
                bits.set(bit, true);
            ASSERT_TRUE(bits.isAll(first, end, true)) << first << " to " << end;
            ASSERT_EQ(bits.isAll(first, end, false), first == end) << first << " to " << end;
            if (first > 0) {
                ASSERT_FALSE(bits.isAll(first - 1, end, true)) << first << " to " << end;
                ASSERT_TRUE(bits.isAll(0, first, false)) << first << " to " << end;
            }
            if (end < 40) {
                ASSERT_FALSE(bits.isAll(first, end + 1, true)) << first << " to " << end;
            }
        }
}

TEST(BitString, IsAddedToItself) {
    BitString bits(3, Bytes{0x05});
    bits.append(bits);
    EXPECT_EQ(bits, BitString(6, Bytes{0x2D}));
}

TEST(BitString, APartBeginsAnywhere) {
    const auto bits = pattern(50);
    for (std::size_t first = 0; first < 50; ++first)
        for (std::size_t count = 0; count < 60; ++count) {
            const auto part = bits.part(first, count);
            ASSERT_EQ(part.size(), count);
            for (std::size_t bit = 0; bit < count; ++bit)
                ASSERT_EQ(part.at(bit), first + bit < 50 && bits.at(first + bit))
                    << first << " and " << count;
        }
}

} // namespace
