#include <tavo/client/wire/deadline.h>

#include <algorithm>
#include <stdexcept>
#include <string>

namespace TAVO {

Deadline::Deadline(TimeLimit limit) { setLimit(limit); }

void Deadline::setLimit(TimeLimit limit) {
    if (limit && limit->count() < 1)
        throw std::invalid_argument("the time limit must be at least 1 ms, not " +
                                    std::to_string(limit->count()) + " ms");
    limit_ = limit;
    start();
}

void Deadline::start() noexcept {
    // A later end than this would be beyond what the clock counts.
    constexpr std::chrono::milliseconds longest = std::chrono::hours(24 * 365 * 100);
    if (limit_)
        end_ = Clock::now() + std::min(*limit_, longest);
}

TimeLimit Deadline::left() const noexcept {
    if (!limit_)
        return std::nullopt;
    return std::chrono::ceil<std::chrono::milliseconds>(
        std::max(end_ - Clock::now(), Clock::duration::zero()));
}

} // namespace TAVO
