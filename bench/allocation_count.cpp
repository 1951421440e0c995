#include <bench/allocation_count.h>

#include <cstdlib>
#include <new>

namespace {

thread_local std::size_t count = 0;

void* take(std::size_t size) noexcept {
    ++count;
    return std::malloc(size > 0 ? size : 1);
}

void* takeOrThrow(std::size_t size) {
    if (void* memory = take(size))
        return memory;
    throw std::bad_alloc();
}

} // namespace

std::size_t bench::allocationCount() noexcept { return count; }

void* operator new(std::size_t size) { return takeOrThrow(size); }
void* operator new[](std::size_t size) { return takeOrThrow(size); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return take(size); }
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept { return take(size); }
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete[](void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete[](void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete(void* memory, const std::nothrow_t&) noexcept { std::free(memory); }
void operator delete[](void* memory, const std::nothrow_t&) noexcept { std::free(memory); }
