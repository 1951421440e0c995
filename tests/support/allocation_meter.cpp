#include <tests/support/allocation_meter.h>

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <new>

#include <tests/support/allocation_account.h>

namespace support {

thread_local Taken taken;
thread_local Held held;

namespace {

constexpr std::size_t unlimited = std::numeric_limits<std::size_t>::max();
thread_local std::size_t nothrowPieces = unlimited;
thread_local std::size_t piecesUntilFailure = 0; // 0 when none is to fail

} // namespace

bool isRefused() noexcept { return piecesUntilFailure > 0 && --piecesUntilFailure == 0; }

namespace {

void* take(std::size_t size) noexcept {
    taken.note(size);
    if (isRefused())
        return nullptr;
    void* memory = std::malloc(size > 0 ? size : 1);
    held.add(memory);
    return memory;
}

void* takeOrThrow(std::size_t size) {
    if (void* memory = take(size))
        return memory;
    throw std::bad_alloc();
}

void* takeWithinLimit(std::size_t size) noexcept {
    if (nothrowPieces == 0)
        return nullptr;
    if (nothrowPieces != unlimited)
        --nothrowPieces;
    return take(size);
}

} // namespace

AllocationMeter::AllocationMeter() noexcept
    : heldPiecesBefore_(held.pieces)
    , heldBytesBefore_(held.bytes) {
    taken = {};
    held.peak = held.bytes;
}
std::size_t AllocationMeter::count() const noexcept { return taken.count; }
std::size_t AllocationMeter::reallocations() const noexcept { return taken.reallocations; }
std::size_t AllocationMeter::largest() const noexcept { return taken.largest; }
std::size_t AllocationMeter::total() const noexcept { return taken.total; }
std::size_t AllocationMeter::peak() const noexcept {
    return static_cast<std::size_t>(held.peak - heldBytesBefore_);
}
std::ptrdiff_t AllocationMeter::heldPieces() const noexcept { return held.pieces - heldPiecesBefore_; }

NothrowLimit::NothrowLimit(std::size_t pieces) noexcept { nothrowPieces = pieces; }
NothrowLimit::~NothrowLimit() { nothrowPieces = unlimited; }

FailingAllocation::FailingAllocation(std::size_t number) noexcept { piecesUntilFailure = number; }
FailingAllocation::~FailingAllocation() { piecesUntilFailure = 0; }
bool FailingAllocation::hasHappened() const noexcept { return piecesUntilFailure == 0; }

} // namespace support

// All forms of one alignment are replaced together: a sanitizer brings its own for those left out, and
// memory taken by one of those and given back by one of these would count as a mistake.

void* operator new(std::size_t size) { return support::takeOrThrow(size); }
void* operator new[](std::size_t size) { return support::takeOrThrow(size); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return support::takeWithinLimit(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    return support::takeWithinLimit(size);
}
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete[](void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete[](void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete(void* memory, const std::nothrow_t&) noexcept { std::free(memory); }
void operator delete[](void* memory, const std::nothrow_t&) noexcept { std::free(memory); }
