#include <tavo/simulator/models/packed_bits.h>

#include <algorithm>

namespace TAVO::simulator {

namespace {

constexpr std::size_t byteBits = 8;

std::uint8_t maskOf(std::size_t bits) { return static_cast<std::uint8_t>((1u << bits) - 1); }

} // namespace

PackedBits::PackedBits(std::size_t size, bool level)
    : size_(size)
    , bytes_(bytesFor(size), level ? std::uint8_t{0xFF} : std::uint8_t{0}) {
    resize(size);
}

PackedBits PackedBits::ofNumber(std::size_t size, std::uint64_t number) {
    PackedBits bits(size);
    for (auto& byte : bits.bytes_) {
        byte = static_cast<std::uint8_t>(number);
        number >>= byteBits;
    }
    bits.resize(size);
    return bits;
}

void PackedBits::set(std::size_t bit, bool level) {
    const auto mask = static_cast<std::uint8_t>(1u << bit % byteBits);
    auto& byte = bytes_[bit / byteBits];
    byte = static_cast<std::uint8_t>(level ? byte | mask : byte & ~mask);
}

std::uint64_t PackedBits::number() const {
    std::uint64_t number = 0;
    for (auto byte = std::min(bytes_.size(), sizeof number); byte-- > 0;)
        number = number << byteBits | bytes_[byte];
    return number;
}

void PackedBits::append(bool level) {
    if (size_ % byteBits == 0)
        bytes_.push_back(0);
    ++size_;
    if (level)
        set(size_ - 1, true);
}

void PackedBits::resize(std::size_t size) {
    size_ = size;
    bytes_.resize(bytesFor(size));
    if (size % byteBits != 0)
        bytes_.back() &= maskOf(size % byteBits);
}

void PackedBits::copy(std::size_t to, std::span<const std::uint8_t> source, std::size_t from,
                      std::size_t count) {
    for (; count > 0 && to % byteBits != 0; --count)
        set(to++, bitOf(source, from++));
    if (count == 0)
        return;
    const auto target = bytes_.begin() + static_cast<std::ptrdiff_t>(to / byteBits);
    const auto bytes = count / byteBits;
    const auto* first = source.data() + from / byteBits;
    const auto offset = from % byteBits;
    if (offset == 0)
        std::copy_n(first, bytes, target);
    else
        std::transform(first, first + bytes, first + 1, target, [offset](unsigned low, unsigned high) {
            return static_cast<std::uint8_t>(low >> offset | high << (byteBits - offset));
        });
    for (auto bit = bytes * byteBits; bit < count; ++bit)
        set(to + bit, bitOf(source, from + bit));
}

} // namespace TAVO::simulator
