#include <tavo/jtag/bit_string.h>

#include <algorithm>
#include <span>
#include <utility>

namespace TAVO::jtag {

BitString::BitString(std::size_t size, bool level)
    : BitString(size, std::vector<std::uint8_t>(BitString::bytesFor(size), level ? 0xFF : 0x00)) {}

BitString::BitString(std::size_t size, std::vector<std::uint8_t> bytes)
    : size_(size)
    , bytes_(std::move(bytes)) {
    bytes_.resize(BitString::bytesFor(size));
    if (size % 8 != 0)
        bytes_.back() = static_cast<std::uint8_t>(bytes_.back() & ((1u << size % 8) - 1));
}

void BitString::set(std::size_t bit, bool level) {
    const auto mask = 1u << bit % 8;
    auto& byte = bytes_[bit / 8];
    byte = static_cast<std::uint8_t>(level ? byte | mask : byte & ~mask);
}

bool BitString::isAll(std::size_t first, std::size_t end, bool level) const {
    for (; first < end && first % 8 != 0; ++first)
        if (at(first) != level)
            return false;
    for (; end > first && end % 8 != 0; --end)
        if (at(end - 1) != level)
            return false;
    const auto whole = std::span(bytes_).subspan(first / 8, (end - std::min(first, end)) / 8);
    const std::uint8_t expected = level ? 0xFF : 0x00;
    return std::all_of(whole.begin(), whole.end(), [=](auto byte) { return byte == expected; });
}

std::uint32_t BitString::number(std::size_t first, std::size_t count) const {
    std::uint32_t number = 0;
    for (std::size_t bit = 0; bit < count; ++bit)
        number |= std::uint32_t{at(first + bit)} << bit;
    return number;
}

void BitString::append(bool level) {
    if (size_ % 8 == 0)
        bytes_.push_back(0);
    ++size_;
    if (level)
        set(size_ - 1, true);
}

void BitString::append(const BitString& more) {
    if (&more == this)
        return append(BitString(more));
    const auto offset = size_ % 8;
    if (offset == 0) {
        bytes_.insert(bytes_.end(), more.bytes_.begin(), more.bytes_.end());
    } else {
        bytes_.reserve(bytesFor(size_ + more.size_) + 1);
        for (const auto byte : more.bytes_) {
            bytes_.back() = static_cast<std::uint8_t>(bytes_.back() | byte << offset);
            bytes_.push_back(static_cast<std::uint8_t>(byte >> (8 - offset)));
        }
    }
    size_ += more.size_;
    bytes_.resize(bytesFor(size_));
}

BitString BitString::part(std::size_t first, std::size_t count) const {
    const auto byteAt = [this](std::size_t index) {
        return index < bytes_.size() ? unsigned{bytes_[index]} : 0u;
    };
    std::vector<std::uint8_t> bytes(bytesFor(count));
    const auto offset = first % 8;
    for (std::size_t index = 0; index < bytes.size(); ++index)
        bytes[index] = static_cast<std::uint8_t>(
            (byteAt(first / 8 + index) | byteAt(first / 8 + index + 1) << 8) >> offset);
    return {count, std::move(bytes)};
}

} // namespace TAVO::jtag
