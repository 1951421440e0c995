#pragma once

#include <cstddef>

namespace support {

/// Watches what the constructing thread takes from the heap by `new` while it lives. One at a time per
/// thread.
class AllocationMeter {
public:
    AllocationMeter() noexcept;
    AllocationMeter(const AllocationMeter&) = delete;
    AllocationMeter& operator=(const AllocationMeter&) = delete;

    std::size_t count() const noexcept;
    /// Size of the largest single piece.
    std::size_t largest() const noexcept;
    /// Sum over all pieces, given back or not.
    std::size_t total() const noexcept;
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

} // namespace support
