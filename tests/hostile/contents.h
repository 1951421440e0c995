#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace hostile {

/// All values of some results, in order, in a few digits: what was read twice can be compared by them. The
/// count of a list follows its elements.
class Contents {
public:
    void number(std::uint64_t value) {
        for (int shift = 0; shift < 64; shift += 8)
            add(static_cast<std::uint8_t>(value >> shift));
        ++values_;
    }
    void block(std::string_view bytes) {
        for (const auto byte : bytes)
            add(static_cast<std::uint8_t>(byte));
        number(bytes.size());
    }

    std::string text() const {
        return values_ == 0 ? "nothing" : std::to_string(values_) + " values " + std::to_string(sum_);
    }

private:
    void add(std::uint8_t byte) { sum_ = (sum_ ^ byte) * 0x100000001B3u; }

    std::uint64_t sum_ = 0xCBF29CE484222325u;
    std::size_t values_ = 0;
};

} // namespace hostile
