#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <utility>
#include <vector>

#include <tavo/simulator/export.h>

namespace TAVO::simulator {

/// A bit of packed bytes: bit i is bit i%8 of byte i/8.
inline bool bitOf(std::span<const std::uint8_t> bytes, std::size_t bit) {
    return (bytes[bit / 8] >> bit % 8 & 1) != 0;
}

/// Bits in shift order, packed as in the calls: bit i is bit i%8 of byte i/8; bit 0 is shifted first. Unused
/// bits of the last byte are 0.
class TAVO_SIMULATOR_API PackedBits {
public:
    static constexpr std::size_t bytesFor(std::size_t bits) { return bits / 8 + (bits % 8 != 0 ? 1 : 0); }

    PackedBits() = default;
    /// `size` bits, all at `level`.
    explicit PackedBits(std::size_t size, bool level = false);
    /// The lowest `size` bits of a number, bit 0 the lowest.
    static PackedBits ofNumber(std::size_t size, std::uint64_t number);

    std::size_t size() const noexcept { return size_; }
    bool empty() const noexcept { return size_ == 0; }
    const std::vector<std::uint8_t>& bytes() const noexcept { return bytes_; }
    /// The bytes themselves; nothing is left.
    std::vector<std::uint8_t> takeBytes() {
        size_ = 0;
        return std::exchange(bytes_, {});
    }

    bool at(std::size_t bit) const { return bitOf(bytes_, bit); }
    void set(std::size_t bit, bool level);
    /// The lowest 64 bits as a number.
    std::uint64_t number() const;

    void append(bool level);
    /// Cuts bits off, or adds bits that are 0.
    void resize(std::size_t size);
    void clear() { resize(0); }
    /// Copies `count` bits of `source`, from bit `from` on, to the bits from `to` on; both must be there.
    /// `source` must not be the own bytes.
    void copy(std::size_t to, std::span<const std::uint8_t> source, std::size_t from, std::size_t count);

    bool operator==(const PackedBits&) const = default;

private:
    std::size_t size_ = 0;
    std::vector<std::uint8_t> bytes_;
};

} // namespace TAVO::simulator
