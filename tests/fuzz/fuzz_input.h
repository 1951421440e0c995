#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <span>
#include <string>
#include <vector>

/// What all fuzz targets share: how an input is taken apart, and how a broken invariant is reported.
namespace fuzz {

using Bytes = std::vector<std::uint8_t>;
using View = std::span<const std::uint8_t>;

/// Takes an input apart from its front. Behind its end there are zeros and empty blocks.
class Input {
public:
    Input(const std::uint8_t* bytes, std::size_t length)
        : rest_(bytes, length) {}

    bool empty() const { return rest_.empty(); }
    std::size_t size() const { return rest_.size(); }

    std::uint8_t byte() {
        const auto head = take(1);
        return head.empty() ? std::uint8_t{0} : head.front();
    }
    std::uint16_t word() {
        const auto high = byte();
        return static_cast<std::uint16_t>(high << 8 | byte());
    }
    View take(std::size_t count) {
        const auto head = rest_.first(std::min(count, rest_.size()));
        rest_ = rest_.subspan(head.size());
        return head;
    }
    /// A block with its length in two bytes before it.
    View block() {
        const auto length = word();
        return take(length);
    }
    View rest() { return take(rest_.size()); }

private:
    View rest_;
};

/// The opposite, for seeds.
class InputWriter {
public:
    InputWriter& byte(std::size_t value) {
        bytes.push_back(static_cast<std::uint8_t>(value));
        return *this;
    }
    InputWriter& word(std::size_t value) { return byte(value >> 8).byte(value); }
    InputWriter& raw(View content) {
        bytes.insert(bytes.end(), content.begin(), content.end());
        return *this;
    }
    InputWriter& block(View content) { return word(content.size()).raw(content); }

    Bytes bytes;
};

inline std::string textOf(View bytes) { return {bytes.begin(), bytes.end()}; }

/// Ends the program when an invariant is broken; the fuzzer keeps the input then.
inline void require(bool holds, const char* invariant, const std::string& details = "") {
    if (holds)
        return;
    std::fprintf(stderr, "broken: %s%s%s\n", invariant, details.empty() ? "" : ": ", details.c_str());
    std::abort();
}

} // namespace fuzz
