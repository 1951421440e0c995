#pragma once

#include <chrono>
#include <cstddef>
#include <utility>
#include <vector>

namespace bench {

/// Seconds that the action takes.
template <class Action>
double timed(Action&& action) {
    const auto start = std::chrono::steady_clock::now();
    action();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

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

/// Runs both ways in turn, `pieces` pieces of work each time, the order changing from round to round; one
/// more round comes first and does not count.
template <class Raw, class Library>
Comparison interleaved(std::size_t rounds, std::size_t pieces, Raw&& raw, Library&& library) {
    std::vector<std::pair<double, double>> times;
    const auto run = [&](auto& work) {
        return timed([&] {
                   for (std::size_t i = 0; i < pieces; ++i)
                       work();
               }) /
               static_cast<double>(pieces);
    };
    for (std::size_t round = 0; round <= rounds; ++round) {
        std::pair<double, double> time;
        if (round % 2 == 0) {
            time.first = run(raw);
            time.second = run(library);
        } else {
            time.second = run(library);
            time.first = run(raw);
        }
        if (round > 0)
            times.push_back(time);
    }
    return compared(times);
}

} // namespace bench
