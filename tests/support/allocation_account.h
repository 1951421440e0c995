#pragma once

#include <algorithm>
#include <cstddef>

#include <malloc.h>

/// The counts behind AllocationMeter.
namespace support {

struct Taken {
    std::size_t count = 0;
    std::size_t reallocations = 0;
    std::size_t largest = 0;
    std::size_t total = 0;

    void note(std::size_t size) noexcept {
        ++count;
        largest = std::max(largest, size);
        total += size;
    }
};

inline std::ptrdiff_t sizeOf(void* memory) noexcept {
#ifdef _WIN32
    return static_cast<std::ptrdiff_t>(_msize(memory));
#else
    return static_cast<std::ptrdiff_t>(malloc_usable_size(memory));
#endif
}

struct Held {
    std::ptrdiff_t pieces = 0;
    std::ptrdiff_t bytes = 0;
    std::ptrdiff_t peak = 0;

    void add(void* memory) noexcept {
        if (!memory)
            return;
        ++pieces;
        bytes += sizeOf(memory);
        peak = std::max(peak, bytes);
    }
    void remove(void* memory) noexcept {
        if (!memory)
            return;
        --pieces;
        bytes -= sizeOf(memory);
    }
};

extern thread_local Taken taken;
extern thread_local Held held;

/// Whether the piece that is asked for now is the one of FailingAllocation.
bool isRefused() noexcept;

} // namespace support
