#pragma once

#include <cstddef>
#include <utility>
#include <vector>

#include <bench/clock.h>

namespace bench {

double median(std::vector<double> values);

/// A value measured in several rounds.
struct Measured {
    double value = 0; ///< the median
    double noise = 0; ///< how far the median may be from that of endless rounds: twice its standard error
};

Measured summarised(const std::vector<double>& rounds);

/// Two ways of doing the same work: seconds per piece, and the ratio of the second to the first.
struct Comparison {
    double raw = 0;
    Measured library;
    Measured ratio; ///< over the ratios of the rounds, as both sides of a round run close together
};

Comparison compared(const std::vector<std::pair<double, double>>& rounds);

/// Runs both ways in turn and swaps their order each round. The first round does not count. Each way returns
/// the seconds per piece of its work.
template <class Raw, class Library>
Comparison interleavedTimes(std::size_t rounds, Raw&& raw, Library&& library) {
    std::vector<std::pair<double, double>> times;
    for (std::size_t round = 0; round <= rounds; ++round) {
        std::pair<double, double> time;
        if (round % 2 == 0) {
            time.first = raw();
            time.second = library();
        } else {
            time.second = library();
            time.first = raw();
        }
        if (round > 0)
            times.push_back(time);
    }
    return compared(times);
}

/// The same for work timed as a whole, with `pieces` pieces per round.
template <class Raw, class Library>
Comparison interleaved(const Clock& clock, std::size_t rounds, std::size_t pieces, Raw&& raw,
                       Library&& library) {
    const auto timeOf = [&clock, pieces](auto& work) {
        return clock.timed([&] {
            for (std::size_t i = 0; i < pieces; ++i)
                work();
        }) / static_cast<double>(pieces);
    };
    return interleavedTimes(
        rounds, [&] { return timeOf(raw); }, [&] { return timeOf(library); });
}

} // namespace bench
