#include <tavo/simulator/models/eeprom.h>

#include <algorithm>
#include <utility>

namespace TAVO::simulator {

Eeprom::Eeprom(const Geometry& geometry, const std::vector<std::uint8_t>& content,
               std::function<std::uint64_t()> now, std::function<bool()> powered)
    : geometry_(geometry)
    , content_(geometry.size, 0xFF)
    , now_(std::move(now))
    , powered_(std::move(powered)) {
    setContent(content);
}

void Eeprom::setContent(const std::vector<std::uint8_t>& content) {
    const auto length = std::min(content.size(), content_.size());
    std::copy_n(content.begin(), length, content_.begin());
}

bool Eeprom::address(Direction direction) {
    changes_.clear();
    addressBytesMissing_ = direction == Direction::write ? geometry_.addressBytes : 0;
    return (!powered_ || powered_()) && now_() >= busyUntil_;
}

bool Eeprom::write(std::uint8_t byte) {
    if (addressBytesMissing_ > 0) {
        --addressBytesMissing_;
        position_ = ((position_ << 8) | byte) & (geometry_.size - 1);
        return true;
    }
    changes_[position_] = byte;
    const auto page = position_ - position_ % geometry_.pageSize;
    position_ = page + (position_ + 1) % geometry_.pageSize;
    return true;
}

std::uint8_t Eeprom::read() {
    const auto byte = content_[position_];
    position_ = (position_ + 1) & (geometry_.size - 1);
    return byte;
}

void Eeprom::stop() {
    if (changes_.empty())
        return;
    for (const auto& [position, byte] : changes_)
        content_[position] = byte;
    changes_.clear();
    busyUntil_ = now_() + writeCycle;
}

} // namespace TAVO::simulator
