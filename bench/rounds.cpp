#include <bench/rounds.h>

#include <algorithm>
#include <cmath>

namespace bench {

double median(std::vector<double> values) {
    if (values.empty())
        return 0;
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    if (values.size() % 2 == 1)
        return *middle;
    return (*middle + *std::max_element(values.begin(), middle)) / 2;
}

Measured summarised(const std::vector<double>& rounds) {
    if (rounds.empty())
        return {};
    Measured result{median(rounds), 0};
    std::vector<double> distances;
    for (const auto round : rounds)
        distances.push_back(std::abs(round - result.value));
    // Of rounds that vary as a normal distribution does, from the median distance, which ignores outliers.
    constexpr double deviation = 1.4826, errorOfMedian = 1.2533;
    const auto spread = median(std::move(distances)) * deviation;
    result.noise = 2 * errorOfMedian * spread / std::sqrt(static_cast<double>(rounds.size()));
    return result;
}

Comparison compared(const std::vector<std::pair<double, double>>& rounds) {
    std::vector<double> raw, library, ratios;
    for (const auto& [rawTime, libraryTime] : rounds) {
        raw.push_back(rawTime);
        library.push_back(libraryTime);
        ratios.push_back(libraryTime / rawTime);
    }
    return {median(std::move(raw)), summarised(library), summarised(ratios)};
}

} // namespace bench
