#pragma once

#include <cstddef>
#include <memory>
#include <utility>

#include <tavo/client/export.h>

namespace TAVO::TAVOXTranscode {

/// Memory for the records and Methods of calls, which come and go by the thousand and have few sizes. Each
/// thread keeps up to `mostKept` bytes of what it has freed for what it makes next; the rest goes to and
/// comes from operator new. Any thread may free what another has made.
///
/// Where a sanitizer watches the memory, and on Windows, nothing is kept.
class TAVO_API SmallBlocks {
public:
    static constexpr std::size_t mostKept = std::size_t{1024} * 1024;

    /// Whether this build keeps any.
    static bool areKept() noexcept;

    /// A block of at least that size.
    /// @throws std::bad_alloc
    static void* take(std::size_t bytes);
    /// Gives a block back, or keeps it. @param bytes as many as the block was taken for.
    static void give(void* block, std::size_t bytes) noexcept;
};

/// A standard allocator of SmallBlocks.
template <class T>
struct SmallBlockAllocator {
    using value_type = T;

    SmallBlockAllocator() = default;
    template <class Other>
    SmallBlockAllocator(const SmallBlockAllocator<Other>&) noexcept {}

    /// Memory for `count` objects, from SmallBlocks::take. Throws what that throws.
    T* allocate(std::size_t count) {
        static_assert(alignof(T) <= alignof(std::max_align_t));
        return static_cast<T*>(SmallBlocks::take(count * sizeof(T)));
    }
    /// Gives it back by SmallBlocks::give.
    void deallocate(T* block, std::size_t count) noexcept { SmallBlocks::give(block, count * sizeof(T)); }

    template <class Other>
    bool operator==(const SmallBlockAllocator<Other>&) const noexcept {
        return true;
    }
};

/// std::make_shared with memory from SmallBlocks.
template <class T, class... Arguments>
std::shared_ptr<T> makePooled(Arguments&&... arguments) {
    return std::allocate_shared<T>(SmallBlockAllocator<T>(), std::forward<Arguments>(arguments)...);
}

} // namespace TAVO::TAVOXTranscode
