#include <tavo/simulator/clock.h>

namespace TAVO::simulator {

namespace {

template <class Duration>
std::int64_t microseconds(Duration duration) {
    return std::chrono::duration_cast<std::chrono::microseconds>(duration).count();
}

// Any 64-bit time may be set; it wraps around rather than overflows.
std::int64_t wrappingSum(std::int64_t left, std::int64_t right) {
    return static_cast<std::int64_t>(static_cast<std::uint64_t>(left) + static_cast<std::uint64_t>(right));
}

} // namespace

Clock::Clock()
    : start_(std::chrono::steady_clock::now())
    , timeAtStart_(microseconds(std::chrono::system_clock::now().time_since_epoch())) {}

std::int64_t Clock::time() const { return wrappingSum(timeAtStart_, elapsed()); }

void Clock::setTime(std::int64_t time) {
    timeAtStart_ =
        static_cast<std::int64_t>(static_cast<std::uint64_t>(time) - static_cast<std::uint64_t>(elapsed()));
}

std::int64_t Clock::elapsed() const {
    return microseconds(std::chrono::steady_clock::now() - start_) + advanced_;
}

void Clock::advance(std::chrono::microseconds duration) { advanced_ += duration.count(); }

} // namespace TAVO::simulator
