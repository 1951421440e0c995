#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include <tavo/jtag/tap_tracker.h>

namespace TAVO::cli {

/// How many bits of clocks are kept that nobody waits for.
inline constexpr std::size_t mostHeldBits = std::size_t{512} * 1024;

/// What the protocols of cables need of a JTAG port, and of whoever started the server.
struct JtagAccess {
    /// Runs the steps, in one exchange if there are any.
    std::function<std::vector<jtag::BitString>(const jtag::Steps&)> run;
    /// Asks for at most that frequency of TCK. Returns the one that is set.
    std::function<std::int32_t(std::int32_t hertz)> setFrequency;
    jtag::TapTracker::TimeOf timeOf;
    std::function<void(const std::string&)> warn;
    /// Are told the clocks of the client, when TDO is known, and the levels of TRST. Both may be empty.
    std::function<void(bool tms, bool tdi, bool tdo)> clocked = {};
    std::function<void(bool level)> trstSet = {};
};

} // namespace TAVO::cli
