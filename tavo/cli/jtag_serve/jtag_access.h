#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include <tavo/jtag/tap_tracker.h>

namespace TAVO::cli {

/// What the protocols of cables need of a JTAG port, and of whoever started the server.
struct JtagAccess {
    /// Runs the steps, in one exchange if there are any.
    std::function<std::vector<jtag::BitString>(const jtag::Steps&)> run;
    /// Asks for at most that frequency of TCK. Returns the one that is set.
    std::function<std::int32_t(std::int32_t hertz)> setFrequency;
    jtag::TapTracker::TimeOf timeOf;
    /// Is told each clock of the client, with the levels of TMS and TDI, and its TRST. May be empty.
    std::function<void(const std::string&)> warn;
};

} // namespace TAVO::cli
