#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <thread>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#ifdef __GLIBC__
#include <malloc.h>
#endif

#include <tavo/client/transcode/small_blocks.h>
#include <tests/support/allocation_meter.h>

namespace {

using support::AllocationMeter;
using TAVO::TAVOXTranscode::makePooled;
using TAVO::TAVOXTranscode::SmallBlocks;

/// Runs the action in a thread that has kept nothing yet.
template <class Action>
void inAFreshThread(Action action) {
    std::thread(action).join();
}

/// What a thread frees is there for what it makes next.
class KeptBlocks : public testing::Test {
protected:
    void SetUp() override {
        if (!SmallBlocks::areKept())
            GTEST_SKIP() << "nothing is kept in this build";
    }
};

TEST(SmallBlocks, OfEverySizeHoldTheirBytesAndDoNotOverlap) {
    inAFreshThread([] {
        for (int round = 0; round < 3; ++round) {
            std::vector<std::pair<unsigned char*, std::size_t>> blocks;
            for (std::size_t size = 1; size <= 300; ++size) {
                auto* block = static_cast<unsigned char*>(SmallBlocks::take(size));
                EXPECT_EQ(reinterpret_cast<std::uintptr_t>(block) % alignof(std::max_align_t), 0u);
                std::memset(block, static_cast<int>(size % 251), size);
                blocks.emplace_back(block, size);
            }
            for (const auto& [block, size] : blocks) {
                EXPECT_EQ(block[0], size % 251);
                EXPECT_EQ(block[size - 1], size % 251);
                SmallBlocks::give(block, size);
            }
        }
    });
}

TEST_F(KeptBlocks, SpareTheHeapWhatAThreadHasFreed) {
    inAFreshThread([] {
        std::vector<std::shared_ptr<std::array<char, 90>>> records(50);
        for (auto& record : records)
            record = makePooled<std::array<char, 90>>();
        for (auto& record : records)
            record.reset();
        const AllocationMeter meter;
        for (auto& record : records)
            record = makePooled<std::array<char, 90>>();
        EXPECT_EQ(meter.count(), 0u);
    });
}

TEST_F(KeptBlocks, AreNotMoreThanTheBound) {
    inAFreshThread([] {
        constexpr std::size_t size = 256;
        constexpr auto most = SmallBlocks::mostKept / size;
        std::vector<void*> blocks;
        for (std::size_t i = 0; i < most + 100; ++i)
            blocks.push_back(SmallBlocks::take(size));
        for (auto* block : blocks)
            SmallBlocks::give(block, size);
        const AllocationMeter meter;
        for (auto*& block : blocks)
            block = SmallBlocks::take(size);
        EXPECT_EQ(meter.count(), 100u);
        for (auto* block : blocks)
            SmallBlocks::give(block, size);
    });
}

#ifdef __GLIBC__
TEST_F(KeptBlocks, AreGivenBackAtTheEndOfAThread) {
    // A thread gives back what it keeps: otherwise a thousand of them would hold a thousand times the bound.
    const auto grown = [](int threads) {
        for (int i = 0; i < threads; ++i)
            inAFreshThread([] {
                std::vector<void*> blocks;
                for (int k = 0; k < 4000; ++k)
                    blocks.push_back(SmallBlocks::take(256));
                for (auto* block : blocks)
                    SmallBlocks::give(block, 256);
            });
        return ::mallinfo2().uordblks;
    };
    const auto few = grown(3);
    EXPECT_LT(grown(30), few + SmallBlocks::mostKept);
}
#endif

struct FreesAtTheVeryEnd {
    std::shared_ptr<int> last;
};

TEST(SmallBlocks, MayBeFreedWhenTheThreadHasEndedNearly) {
    // Constructed before anything is kept, so it is destroyed after what was kept has been given back.
    inAFreshThread([] {
        static thread_local FreesAtTheVeryEnd atEnd;
        atEnd.last = nullptr;
        SmallBlocks::give(SmallBlocks::take(48), 48);
        atEnd.last = makePooled<int>(1);
    });
}

TEST(SmallBlocks, OfOneThreadMayBeFreedInAnother) {
    std::vector<std::shared_ptr<int>> made;
    inAFreshThread([&] {
        for (int i = 0; i < 1000; ++i)
            made.push_back(makePooled<int>(i));
    });
    inAFreshThread([&] {
        for (int i = 0; i < 1000; ++i)
            EXPECT_EQ(*made[static_cast<std::size_t>(i)], i);
        made.clear();
        const auto again = makePooled<int>(3);
        EXPECT_EQ(*again, 3);
    });
}

} // namespace
