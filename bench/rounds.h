#pragma once

#include <cstddef>
#include <utility>
#include <vector>

#include <bench/clock.h>

namespace bench {

double median(std::vector<double> values);

/// A value that was measured in several rounds.
struct Measured {
    double value = 0; ///< the median
    double noise = 0; ///< the median distance of the rounds from it
};

Measured summarised(const std::vector<double>& rounds);

/// Two ways of doing the same work, in seconds for one piece of it, and what the second takes of the first.
struct Comparison {
    double raw = 0;
    Measured library;
    Measured ratio; ///< over the ratios of the rounds, each of which shares its moment
};

Comparison compared(const std::vector<std::pair<double, double>>& rounds);

/// Runs both ways in turn, the order changing from round to round; one more round comes first and does not
/// count. Each way returns the seconds that one piece of its work took.
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

/// The same for work that is timed as a whole, `pieces` pieces of it in a round.
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
