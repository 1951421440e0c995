#include <tavo/simulator/clock.h>

#include <algorithm>

namespace TAVO::simulator {

namespace {

template <class Duration>
std::int64_t microseconds(Duration duration) {
    return std::chrono::duration_cast<std::chrono::microseconds>(duration).count();
}

// Any 64-bit time may be set, so wrap around: signed overflow is undefined.
std::int64_t wrappingSum(std::int64_t left, std::int64_t right) {
    return static_cast<std::int64_t>(static_cast<std::uint64_t>(left) + static_cast<std::uint64_t>(right));
}

} // namespace

Clock::Clock()
    : start_(std::chrono::steady_clock::now())
    , timeAtStart_(microseconds(std::chrono::system_clock::now().time_since_epoch())) {}

std::int64_t Clock::time() const { return wrappingSum(timeAtStart_, elapsed()); }

void Clock::setTime(std::int64_t microseconds) {
    timeAtStart_ = static_cast<std::int64_t>(static_cast<std::uint64_t>(microseconds) -
                                             static_cast<std::uint64_t>(elapsed()));
}

std::int64_t Clock::elapsed() const {
    const auto real = frozen_ ? 0 : microseconds(std::chrono::steady_clock::now() - start_);
    return std::max(real + advanced_, heldAt_);
}

void Clock::advance(std::chrono::microseconds duration) {
    const auto moved = [&](std::int64_t time) {
        return std::min(time, longest.count()) + std::min(duration, longest).count();
    };
    advanced_ = std::min(moved(advanced_), longest.count());
    heldAt_ = std::min(moved(heldAt_), longest.count());
}

void Clock::holdAt(std::int64_t elapsed) { heldAt_ = std::max(heldAt_, elapsed); }

void Clock::freeze() {
    advanced_ = elapsed();
    frozen_ = true;
}

} // namespace TAVO::simulator
