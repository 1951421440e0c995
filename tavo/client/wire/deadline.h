#pragma once

#include <chrono>
#include <optional>

#include <tavo/client/export.h>

namespace TAVO {

/// How long one exchange may take, at least 1 ms; as long as it takes without a value.
using TimeLimit = std::optional<std::chrono::milliseconds>;

/// The time limit of a transport and when the exchange that runs must have ended. For transports of an
/// application's own: start() where an exchange begins, left() for every wait. Not for several threads.
class TAVO_API Deadline {
public:
    /// @throws std::invalid_argument that names a limit below 1 ms.
    explicit Deadline(TimeLimit limit = std::nullopt);

    /// @throws as the constructor; the limit before holds then. An exchange that runs is given the whole
    /// limit
    ///         from here.
    void setLimit(TimeLimit limit);
    TimeLimit limit() const noexcept { return limit_; }

    /// An exchange begins.
    void start() noexcept;

    /// What is left of the limit, never below zero, rounded up to whole milliseconds; empty without a limit.
    TimeLimit left() const noexcept;

    bool isOver() const noexcept { return limit_ && Clock::now() >= end_; }

private:
    using Clock = std::chrono::steady_clock;

    TimeLimit limit_;
    Clock::time_point end_; ///< of the exchange, where there is a limit
};

} // namespace TAVO
