#pragma once

#include <cstdint>
#include <string>

namespace TAVO::cli {

/// The unit of a clock that counts from 1970-01-01T00:00:00Z.
enum class ClockUnit : std::int64_t {
    seconds = 1,
    milliseconds = 1'000,
    microseconds = 1'000'000,
    nanoseconds = 1'000'000'000,
};

/// Parses a moment in ISO 8601, `2024-05-06T07:08:09[.fraction][Z|+hh:mm|-hh:mm]`, UTC if it has no zone.
/// Cuts off digits below the unit.
/// @throws std::invalid_argument for anything else, and for moments beyond 64 bits.
std::int64_t parseMoment(const std::string& text, ClockUnit unit);

/// The inverse, in UTC, with as many fractional digits as the unit has.
std::string momentText(std::int64_t number, ClockUnit unit);

} // namespace TAVO::cli
