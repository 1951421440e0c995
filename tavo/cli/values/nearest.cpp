#include <tavo/cli/values/nearest.h>

#include <algorithm>
#include <cstddef>

namespace TAVO::cli {

namespace {

/// How many characters to insert, delete, replace or swap with their neighbour to make one of the other.
std::size_t distance(std::string_view one, std::string_view other) {
    const auto width = other.size() + 1;
    std::vector<std::size_t> table((one.size() + 1) * width);
    const auto at = [&](std::size_t i, std::size_t j) -> std::size_t& { return table[i * width + j]; };
    for (std::size_t i = 0; i <= one.size(); ++i)
        for (std::size_t j = 0; j <= other.size(); ++j) {
            if (i == 0 || j == 0) {
                at(i, j) = i + j;
                continue;
            }
            const bool equal = one[i - 1] == other[j - 1];
            at(i, j) = std::min({at(i - 1, j) + 1, at(i, j - 1) + 1, at(i - 1, j - 1) + (equal ? 0 : 1)});
            if (i > 1 && j > 1 && one[i - 1] == other[j - 2] && one[i - 2] == other[j - 1])
                at(i, j) = std::min(at(i, j), at(i - 2, j - 2) + 1);
        }
    return table.back();
}

} // namespace

std::string nearest(std::string_view word, const std::vector<std::string>& candidates) {
    constexpr std::size_t longest = 64;
    if (word.empty() || word.size() > longest)
        return "";
    std::string best;
    auto smallest = std::max<std::size_t>(1, word.size() / 3) + 1;
    for (const auto& candidate : candidates)
        if (const auto found = distance(word, candidate); found < smallest) {
            smallest = found;
            best = candidate;
        }
    const auto begins = [&](const std::string& candidate) {
        return word.size() > 1 && candidate.starts_with(word);
    };
    if (best.empty())
        if (const auto longer = std::find_if(candidates.begin(), candidates.end(), begins);
            longer != candidates.end())
            best = *longer;
    return best;
}

} // namespace TAVO::cli
