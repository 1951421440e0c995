#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace TAVO::cli {

/// Bits in the order in which they are shifted, packed as they travel: bit i is bit i%8 of byte i/8. Unused
/// bits of the last byte are 0.
class BitString {
public:
    static constexpr std::size_t bytesFor(std::size_t bits) { return bits / 8 + (bits % 8 != 0 ? 1 : 0); }

    BitString() = default;
    /// That many bits of one level.
    BitString(std::size_t size, bool level);
    /// The first `size` bits of `bytes`; what is missing there is 0.
    BitString(std::size_t size, std::vector<std::uint8_t> bytes);

    std::size_t size() const { return size_; }
    const std::vector<std::uint8_t>& bytes() const { return bytes_; }

    bool at(std::size_t bit) const { return (bytes_[bit / 8] >> bit % 8 & 1) != 0; }
    void set(std::size_t bit, bool level);
    /// Whether all bits from `first` to before `end` have the level.
    bool isAll(std::size_t first, std::size_t end, bool level) const;
    /// The number of `count` bits, 32 at most, of which the one at `first` is the lowest.
    std::uint32_t number(std::size_t first, std::size_t count) const;

    bool operator==(const BitString&) const = default;

private:
    std::size_t size_ = 0;
    std::vector<std::uint8_t> bytes_;
};

/// Bit strings in words: a hexadecimal number, whose lowest bit is shifted first, or bytes in the order in
/// which they are shifted, the lowest bit of each first.
enum class BitNotation { number, bytes };

/// The `size` bits that `text` stands for. A number may begin with 0x and is filled up with zeros; bytes are
/// pairs of digits, as many as the bits need.
/// @throws std::invalid_argument for anything else, and where `text` does not fit that many bits.
BitString parseBits(std::size_t size, std::string_view text, BitNotation notation);

/// A number as 0x and all its digits, bytes as pairs of digits; empty for no bits.
std::string bitsText(const BitString& bits, BitNotation notation);

} // namespace TAVO::cli
