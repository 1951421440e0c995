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
    std::size_t room = 0; ///< how much more is kept: nothing but while the phase is `during`
    Phase phase = Phase::before;
    std::array<FreeBlock*, shelfOf(largest) + 1> blocks{};
};

constinit thread_local Shelves shelves;

class EndOfThread {
public:
    EndOfThread() {
        shelves.phase = Phase::during;
        shelves.room = SmallBlocks::mostKept;
    }
    EndOfThread(const EndOfThread&) = delete;
    EndOfThread& operator=(const EndOfThread&) = delete;
    ~EndOfThread() {
        shelves.phase = Phase::after;
        shelves.room = 0;
        for (auto*& first : shelves.blocks)
            while (first)
                ::operator delete(std::exchange(first, first->next));
    }
};

/// Whether there is room for a block now, because the thread has only begun to keep some.
bool beginsWithRoom() noexcept {
    if (shelves.phase != Phase::before)
        return false;
    static thread_local const EndOfThread atEnd;
    return true;
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
    shelves.room += shelf * step;
    return std::exchange(first, first->next);
}

void SmallBlocks::give(void* block, std::size_t bytes) noexcept {
    const auto shelf = shelfOf(bytes);
    const auto size = shelf * step;
    if (!TAVO_KEEPS_BLOCKS || bytes > largest || (shelves.room < size && !beginsWithRoom())) {
        ::operator delete(block);
        return;
    }
    shelves.room -= size;
    auto*& first = shelves.blocks[shelf];
    first = ::new (block) FreeBlock{first};
}

} // namespace TAVO::TAVOXTranscode
