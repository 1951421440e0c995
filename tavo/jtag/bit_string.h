#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace TAVO::jtag {

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

    /// Adds one bit behind the last.
    void append(bool level);
    /// Adds all bits of `more` behind the last.
    void append(const BitString& more);
    /// The `count` bits from `first` on; missing bits are 0.
    BitString part(std::size_t first, std::size_t count) const;

    bool operator==(const BitString&) const = default;

private:
    std::size_t size_ = 0;
    std::vector<std::uint8_t> bytes_;
};

} // namespace TAVO::jtag
