#pragma once

#include <cstddef>

namespace support {

/// Watches what the constructing thread takes from the heap while it lives: by `new`, and by the `realloc` of
/// what is linked into the program. One at a time per thread.
///
/// reallocations(), peak() and heldPieces() need wrapped_allocation.cpp, whose calls the linker puts in
/// place.
class AllocationMeter {
public:
    AllocationMeter() noexcept;
    AllocationMeter(const AllocationMeter&) = delete;
    AllocationMeter& operator=(const AllocationMeter&) = delete;

    std::size_t count() const noexcept;
    /// How many of them were taken by `realloc`.
    std::size_t reallocations() const noexcept;
    /// Size of the largest single piece.
    std::size_t largest() const noexcept;
    /// Sum over all pieces, given back or not.
    std::size_t total() const noexcept;
    /// Most bytes that were held at once.
    std::size_t peak() const noexcept;
    /// Pieces that were taken and have not been given back.
    std::ptrdiff_t heldPieces() const noexcept;

private:
    std::ptrdiff_t heldPiecesBefore_;
    std::ptrdiff_t heldBytesBefore_;
};

/// While it lives, only `pieces` more of the constructing thread's `new (std::nothrow)` succeed. One at a
/// time per thread.
class NothrowLimit {
public:
    explicit NothrowLimit(std::size_t pieces) noexcept;
    NothrowLimit(const NothrowLimit&) = delete;
    NothrowLimit& operator=(const NothrowLimit&) = delete;
    ~NothrowLimit();
};

/// Refuses one piece that the constructing thread asks for, the `number`-th from now on, counted from 1 as
/// AllocationMeter::count() does: `new` throws std::bad_alloc, `new (std::nothrow)` and `realloc` yield null.
/// One at a time per thread.
class FailingAllocation {
public:
    explicit FailingAllocation(std::size_t number) noexcept;
    FailingAllocation(const FailingAllocation&) = delete;
    FailingAllocation& operator=(const FailingAllocation&) = delete;
    ~FailingAllocation();

    bool hasHappened() const noexcept;
};

} // namespace support
