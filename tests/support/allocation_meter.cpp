#include <tests/support/allocation_meter.h>

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <new>

namespace support {

namespace {

struct Taken {
    std::size_t count = 0;
    std::size_t largest = 0;
    std::size_t total = 0;
};

thread_local Taken taken;

constexpr std::size_t unlimited = std::numeric_limits<std::size_t>::max();
thread_local std::size_t nothrowPieces = unlimited;

void* take(std::size_t size) noexcept {
    ++taken.count;
    taken.largest = std::max(taken.largest, size);
    taken.total += size;
    return std::malloc(size > 0 ? size : 1);
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

AllocationMeter::AllocationMeter() noexcept { taken = {}; }
std::size_t AllocationMeter::count() const noexcept { return taken.count; }
std::size_t AllocationMeter::largest() const noexcept { return taken.largest; }
std::size_t AllocationMeter::total() const noexcept { return taken.total; }

NothrowLimit::NothrowLimit(std::size_t pieces) noexcept { nothrowPieces = pieces; }
NothrowLimit::~NothrowLimit() { nothrowPieces = unlimited; }

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
