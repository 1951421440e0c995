#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace TAVO::cli {

/// Bits in shift order, packed as on the wire: bit i is bit i%8 of byte i/8. Unused bits of the last byte are
/// 0.
class BitString {
public:
    static constexpr std::size_t bytesFor(std::size_t bits) { return bits / 8 + (bits % 8 != 0 ? 1 : 0); }

    BitString() = default;
    /// `size` bits, all at `level`.
    BitString(std::size_t size, bool level);
    /// The first `size` bits of `bytes`; missing bits are 0.
    BitString(std::size_t size, std::vector<std::uint8_t> bytes);

    std::size_t size() const { return size_; }
    const std::vector<std::uint8_t>& bytes() const { return bytes_; }

    bool at(std::size_t bit) const { return (bytes_[bit / 8] >> bit % 8 & 1) != 0; }
    void set(std::size_t bit, bool level);
    /// Whether all bits from `first` up to but not including `end` have this level.
    bool isAll(std::size_t first, std::size_t end, bool level) const;
    /// The `count` bits from `first` on as a number, lowest bit first. At most 32 bits.
    std::uint32_t number(std::size_t first, std::size_t count) const;

    bool operator==(const BitString&) const = default;

private:
    std::size_t size_ = 0;
    std::vector<std::uint8_t> bytes_;
};

/// How a bit string is written: as a hexadecimal number, lowest bit shifted first, or as bytes in shift
/// order, lowest bit of each first.
enum class BitNotation { number, bytes };

/// Parses `size` bits. A number may start with 0x and is padded with zeros; bytes are pairs of digits, as
/// many as the bits need.
/// @throws std::invalid_argument for anything else, and if `text` does not fit in `size` bits.
BitString parseBits(std::size_t size, std::string_view text, BitNotation notation);

/// A number as 0x and all digits, bytes as pairs of digits; empty for no bits.
std::string bitsText(const BitString& bits, BitNotation notation);

} // namespace TAVO::cli
