#pragma once

#include <cstddef>

namespace bench {

/// Number of calls of `new` in this thread. Counting is cheap enough to be part of the timed code.
std::size_t allocationCount() noexcept;

} // namespace bench
