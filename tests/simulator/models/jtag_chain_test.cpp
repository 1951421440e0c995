#include <random>

#include <gtest/gtest.h>

#include <tavo/simulator/models/jtag_chain.h>

namespace {

using namespace TAVO::simulator;

using ChainRandom = std::mt19937;

std::size_t upTo(ChainRandom& random, std::size_t most) {
    return std::uniform_int_distribution<std::size_t>(0, most)(random);
}

PackedBits randomBits(ChainRandom& random, std::size_t size) {
    PackedBits bits;
    for (std::size_t bit = 0; bit < size; ++bit)
        bits.append(upTo(random, 1) == 1);
    return bits;
}

std::vector<TapDescription> randomTaps(ChainRandom& random) {
    std::vector<TapDescription> taps(upTo(random, 4));
    for (auto& tap : taps) {
        tap.irLength = static_cast<unsigned>(2 + upTo(random, 62));
        if (upTo(random, 1) == 1)
            tap.idcode = static_cast<std::uint32_t>(random()) | 1;
        // Few instructions, so that random ones select some of them.
        for (std::uint64_t instruction = 1; instruction <= 2; ++instruction) {
            const auto length = 1 + upTo(random, 100);
            tap.registers.push_back(
                {instruction, length, randomBits(random, length), instruction == 1 || upTo(random, 1) == 1});
        }
    }
    return taps;
}

void walkBoth(JtagChain& bulk, JtagChain& single, TapState target) {
    for (const bool tms : shortestPath(bulk.state(), target)) {
        EXPECT_EQ(bulk.clock(tms, true), single.clock(tms, true));
        EXPECT_EQ(bulk.state(), single.state());
    }
}

TEST(JtagChain, ShiftsManyBitsAsOneByOne) {
    ChainRandom random(1149);
    for (int round = 0; round < 300; ++round) {
        const auto taps = randomTaps(random);
        JtagChain bulk(taps);
        JtagChain single(taps);
        for (int scan = 0; scan < 12; ++scan) {
            const bool isIr = upTo(random, 2) == 0;
            const auto start = isIr ? TapState::shiftIr : TapState::shiftDr;
            walkBoth(bulk, single, start);
            // Sometimes the first bits go through one by one, so that registers begin anywhere in their ring.
            for (auto bits = upTo(random, 1) * upTo(random, 70); bits > 0; --bits) {
                const bool tdi = upTo(random, 1) == 1;
                ASSERT_EQ(bulk.clock(false, tdi), single.clock(false, tdi));
            }
            auto tdi = randomBits(random, 1 + upTo(random, 400));
            // Instructions 1 and 2 in most TAPs.
            if (isIr)
                tdi.copy(0, PackedBits::ofNumber(64, 1 + upTo(random, 1)).bytes(), 0,
                         std::min<std::size_t>(64, tdi.size()));
            PackedBits expected;
            for (std::size_t bit = 0; bit < tdi.size(); ++bit)
                expected.append(single.clock(bit + 1 == tdi.size(), tdi.at(bit)));
            ASSERT_EQ(bulk.shift(tdi.bytes(), tdi.size()), expected)
                << taps.size() << " TAPs, " << tdi.size() << " bits";
            ASSERT_EQ(bulk.state(), single.state());
            ASSERT_EQ(bulk.tdo(), single.tdo());
            constexpr TapState ends[]{TapState::runTestIdle, TapState::pauseDr, TapState::pauseIr,
                                      TapState::testLogicReset};
            walkBoth(bulk, single, ends[upTo(random, 3)]);
            for (std::size_t tap = 0; tap < taps.size(); ++tap) {
                ASSERT_EQ(bulk.taps()[tap].instruction(), single.taps()[tap].instruction());
                ASSERT_EQ(bulk.taps()[tap].content(1), single.taps()[tap].content(1));
                ASSERT_EQ(bulk.taps()[tap].shifting(), single.taps()[tap].shifting());
            }
        }
    }
}

TEST(JtagChain, WithoutTapsReadsOnes) {
    JtagChain chain({});
    for (const bool tms : shortestPath(chain.state(), TapState::shiftDr))
        chain.clock(tms, false);
    EXPECT_EQ(chain.shift(std::vector<std::uint8_t>(2), 12), PackedBits(12, true));
    EXPECT_EQ(chain.state(), TapState::exit1Dr);
}

TEST(PackedBits, AreCopiedBetweenAnyPlaces) {
    ChainRandom random(7);
    for (int round = 0; round < 3000; ++round) {
        const auto source = randomBits(random, upTo(random, 60));
        auto target = randomBits(random, upTo(random, 60));
        const auto count = upTo(random, std::min(source.size(), target.size()));
        const auto from = upTo(random, source.size() - count);
        const auto to = upTo(random, target.size() - count);
        auto expected = target;
        for (std::size_t bit = 0; bit < count; ++bit)
            expected.set(to + bit, source.at(from + bit));
        target.copy(to, source.bytes(), from, count);
        ASSERT_EQ(target, expected) << count << " from " << from << " to " << to;
    }
}

TEST(PackedBits, KeepUnusedBitsClear) {
    EXPECT_EQ(PackedBits(11, true).bytes(), (std::vector<std::uint8_t>{0xFF, 0x07}));
    auto bits = PackedBits::ofNumber(70, ~std::uint64_t{0});
    EXPECT_EQ(bits.bytes().size(), 9u);
    EXPECT_EQ(bits.number(), ~std::uint64_t{0});
    bits.resize(5);
    EXPECT_EQ(bits.bytes(), std::vector<std::uint8_t>{0x1F});
    bits.resize(9);
    EXPECT_EQ(bits.bytes(), (std::vector<std::uint8_t>{0x1F, 0x00}));
    EXPECT_EQ(bits.number(), 0x1Fu);
}

} // namespace
