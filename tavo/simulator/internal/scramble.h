#pragma once

#include <cstdint>
#include <string_view>

namespace TAVO::simulator {

/// A hash of the text that looks random.
constexpr std::uint64_t scrambled(std::string_view text) noexcept {
    std::uint64_t hash = 0xcbf29ce484222325u;
    for (const char c : text)
        hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001b3u;
    return hash ^ hash >> 29;
}

/// The same for a number.
constexpr std::uint64_t scrambled(std::uint64_t number) noexcept {
    number += 0x9e3779b97f4a7c15u;
    number = (number ^ number >> 30) * 0xbf58476d1ce4e5b9u;
    number = (number ^ number >> 27) * 0x94d049bb133111ebu;
    return number ^ number >> 31;
}

/// An id from 16 to 65535, derived from the name, that `isTaken` does not reject.
template <class IsTaken>
constexpr std::uint32_t idFor(std::string_view name, IsTaken isTaken) {
    constexpr std::uint32_t first = 16, count = 65536 - first;
    auto offset = static_cast<std::uint32_t>(scrambled(name) % count);
    while (isTaken(first + offset))
        offset = (offset + 1) % count;
    return first + offset;
}

} // namespace TAVO::simulator
