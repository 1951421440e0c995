#pragma once

#include <chrono>
#include <optional>

#include <tavo/client/export.h>

namespace TAVO {

/// How long one exchange may take, at least 1 ms. Empty: no limit.
using TimeLimit = std::optional<std::chrono::milliseconds>;

/// A time limit, and when the current exchange reaches it. For transports of your own: start() at the
/// beginning of each exchange, left() for each wait. One thread at a time.
class TAVO_API Deadline {
public:
    /// Starts at once.
    /// @throws std::invalid_argument that names a limit below 1 ms.
    explicit Deadline(TimeLimit limit = std::nullopt);

    /// Starts again, with the new limit.
    /// @throws std::invalid_argument as the constructor; the former limit stays.
    void setLimit(TimeLimit limit);
    /// The current limit; empty without one.
    TimeLimit limit() const noexcept { return limit_; }

    /// Starts again, with the same limit: an exchange begins.
    void start() noexcept;

    /// What is left of the limit, never below zero, rounded up to whole milliseconds; empty without a limit.
    TimeLimit left() const noexcept;

    /// Whether the limit has passed; never without one.
    bool isOver() const noexcept { return limit_ && Clock::now() >= end_; }

private:
    using Clock = std::chrono::steady_clock;

    TimeLimit limit_;
    Clock::time_point end_; ///< counts only with a limit
};

} // namespace TAVO
