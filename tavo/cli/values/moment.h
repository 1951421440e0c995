#pragma once

#include <cstdint>
#include <string>

namespace TAVO::cli {

/// What a number of a clock that counts from 1970-01-01T00:00:00Z counts.
enum class ClockUnit : std::int64_t {
    seconds = 1,
    milliseconds = 1'000,
    microseconds = 1'000'000,
    nanoseconds = 1'000'000'000,
};

/// A moment in ISO 8601, `2024-05-06T07:08:09[.fraction][Z|+hh:mm|-hh:mm]`, without zone in UTC, as a number.
/// Digits below the unit are cut off.
/// @throws std::invalid_argument for anything else, and for what 64 bits cannot count.
std::int64_t parseMoment(const std::string& text, ClockUnit unit);

/// The opposite, in UTC, with as many digits of fraction as the unit has.
std::string momentText(std::int64_t number, ClockUnit unit);

} // namespace TAVO::cli
