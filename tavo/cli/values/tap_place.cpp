#include <tavo/cli/values/tap_place.h>

#include <algorithm>
#include <cstdint>
#include <numeric>
#include <stdexcept>
#include <string>
#include <utility>

#include <fmt/format.h>

#include <tavo/cli/values/whole_number.h>

namespace TAVO::cli {

namespace {

constexpr std::int64_t shortestRegister = 2;
constexpr std::int64_t longestRegister = 4096;

void copyBits(const BitString& from, std::size_t first, std::size_t count, BitString& to, std::size_t place) {
    for (std::size_t bit = 0; bit < count; ++bit)
        to.set(place + bit, from.at(first + bit));
}

} // namespace

TapPlace::TapPlace(std::vector<std::size_t> lengths, std::size_t tap)
    : lengths_(std::move(lengths))
    , tap_(tap) {
    if (tap_ >= lengths_.size())
        throw std::invalid_argument(
            fmt::format("there is no TAP {}: the chain has {}, counted from 0", tap_, lengths_.size()));
}

BitString TapPlace::around(JtagRegister target, const BitString& bits) const {
    const bool isInstruction = target == JtagRegister::instruction;
    if (isInstruction && bits.size() != lengths_[tap_])
        throw std::invalid_argument(fmt::format("the instruction register of TAP {} has {} bits, not {}",
                                                tap_, lengths_[tap_], bits.size()));
    BitString all(before(target) + bits.size() + after(target), isInstruction);
    copyBits(bits, 0, bits.size(), all, before(target));
    return all;
}

BitString TapPlace::inside(JtagRegister target, const BitString& captured, std::size_t size) const {
    BitString own(size, false);
    copyBits(captured, before(target), size, own, 0);
    return own;
}

std::size_t TapPlace::before(JtagRegister target) const {
    if (target == JtagRegister::data)
        return tap_;
    const auto own = lengths_.begin() + static_cast<std::ptrdiff_t>(tap_);
    return std::accumulate(lengths_.begin(), own, std::size_t{0});
}

std::size_t TapPlace::after(JtagRegister target) const {
    if (target == JtagRegister::data)
        return lengths_.size() - tap_ - 1;
    const auto next = lengths_.begin() + static_cast<std::ptrdiff_t>(tap_) + 1;
    return std::accumulate(next, lengths_.end(), std::size_t{0});
}

std::vector<std::size_t> parseLengths(std::string_view text) {
    std::vector<std::size_t> lengths;
    for (auto rest = text;;) {
        const auto comma = std::min(rest.find(','), rest.size());
        try {
            lengths.push_back(static_cast<std::size_t>(
                parseWholeNumber(rest.substr(0, comma), shortestRegister, longestRegister)));
        } catch (const std::invalid_argument& error) {
            throw std::invalid_argument(fmt::format(
                "'{}' is no list of instruction register lengths such as 8,5,10: {}", text, error.what()));
        }
        if (comma == rest.size())
            return lengths;
        rest.remove_prefix(comma + 1);
    }
}

} // namespace TAVO::cli
