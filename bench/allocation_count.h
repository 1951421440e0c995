#pragma once

#include <cstddef>

namespace bench {

/// How often this thread has asked `new` for memory. Counting is cheap enough to be part of what is timed.
std::size_t allocationCount() noexcept;

} // namespace bench
