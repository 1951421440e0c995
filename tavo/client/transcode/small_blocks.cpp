#include <tavo/client/transcode/small_blocks.h>

#include <array>
#include <new>
#include <utility>

#if defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(memory_sanitizer)
#define TAVO_KEEPS_BLOCKS false
#endif
#endif
#if defined(__SANITIZE_ADDRESS__) || defined(_WIN32)
#define TAVO_KEEPS_BLOCKS false
#endif
#ifndef TAVO_KEEPS_BLOCKS
#define TAVO_KEEPS_BLOCKS true
#endif

namespace TAVO::TAVOXTranscode {

namespace {

struct FreeBlock {
    FreeBlock* next;
};

constexpr std::size_t step = 16;
constexpr std::size_t largest = 256;

constexpr std::size_t shelfOf(std::size_t bytes) { return (bytes + step - 1) / step; }

enum class Phase { before, during, after };

/// What one thread keeps. Trivially destructible: blocks are freed until the very end of a thread, when what
/// has a destructor is gone.
struct Shelves {
    Phase phase = Phase::before;
    std::size_t kept = 0;
    std::array<FreeBlock*, shelfOf(largest) + 1> blocks{};
};

constinit thread_local Shelves shelves;

class EndOfThread {
public:
    EndOfThread() { shelves.phase = Phase::during; }
    EndOfThread(const EndOfThread&) = delete;
    EndOfThread& operator=(const EndOfThread&) = delete;
    ~EndOfThread() {
        shelves.phase = Phase::after;
        for (auto*& first : shelves.blocks)
            while (first)
                ::operator delete(std::exchange(first, first->next));
    }
};

bool begins() noexcept {
    if (shelves.phase == Phase::before)
        static thread_local const EndOfThread atEnd;
    return shelves.phase == Phase::during;
}

} // namespace

bool SmallBlocks::areKept() noexcept { return TAVO_KEEPS_BLOCKS; }

void* SmallBlocks::take(std::size_t bytes) {
    const auto shelf = shelfOf(bytes);
    if (!TAVO_KEEPS_BLOCKS || bytes > largest)
        return ::operator new(bytes);
    auto*& first = shelves.blocks[shelf];
    if (!first)
        return ::operator new(shelf* step);
    shelves.kept -= shelf * step;
    return std::exchange(first, first->next);
}

void SmallBlocks::give(void* block, std::size_t bytes) noexcept {
    const auto shelf = shelfOf(bytes);
    const auto size = shelf * step;
    const bool keeps = TAVO_KEEPS_BLOCKS && bytes <= largest && shelves.kept + size <= mostKept &&
                       (shelves.phase == Phase::during || begins());
    if (!keeps) {
        ::operator delete(block);
        return;
    }
    shelves.kept += size;
    auto*& first = shelves.blocks[shelf];
    first = ::new (block) FreeBlock{first};
}

} // namespace TAVO::TAVOXTranscode
