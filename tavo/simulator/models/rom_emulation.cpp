#include <tavo/simulator/models/rom_emulation.h>

#include <algorithm>
#include <stdexcept>
#include <string>
#include <utility>

namespace TAVO::simulator {

namespace {

constexpr std::uint8_t erased = 0xFF;

} // namespace

RomEmulation::RomEmulation(std::shared_ptr<Board> board)
    : RomEmulation(std::move(board), size) {}

RomEmulation::RomEmulation(std::shared_ptr<Board> board, std::size_t capacity)
    : board_(std::move(board))
    , capacity_(capacity) {
    if (capacity < 1 || capacity > largestSize)
        throw std::invalid_argument("a ROM emulation cannot have " + std::to_string(capacity) + " bytes");
}

bool RomEmulation::liesInside(std::int64_t offset, std::int64_t length) const noexcept {
    const auto end = static_cast<std::int64_t>(capacity_);
    return offset >= 0 && length >= 0 && offset <= end && length <= end - offset;
}

std::optional<std::vector<std::uint8_t>> RomEmulation::read(std::int64_t offset, std::int64_t length) const {
    if (!liesInside(offset, length))
        return std::nullopt;
    std::vector<std::uint8_t> data(static_cast<std::size_t>(length), erased);
    const auto begin = std::min(static_cast<std::size_t>(offset), written_.size());
    const auto end = std::min(begin + data.size(), written_.size());
    std::copy(written_.begin() + static_cast<std::ptrdiff_t>(begin),
              written_.begin() + static_cast<std::ptrdiff_t>(end), data.begin());
    return data;
}

bool RomEmulation::write(std::int64_t offset, std::span<const std::uint8_t> data) {
    if (!liesInside(offset, static_cast<std::int64_t>(data.size())))
        return false;
    board_->settle();
    const auto end = static_cast<std::size_t>(offset) + data.size();
    if (written_.size() < end)
        written_.resize(end, erased);
    std::copy(data.begin(), data.end(), written_.begin() + static_cast<std::ptrdiff_t>(offset));
    return true;
}

bool RomEmulation::setRomType(std::uint8_t type) {
    if (type != lpc && type != firmwareHub)
        return false;
    romType_ = type;
    return true;
}

void RomEmulation::setEnabled(bool enabled) {
    board_->settle();
    enabled_ = enabled;
}

void RomEmulation::reset() {
    board_->settle();
    written_.clear();
    romType_ = lpc;
    enabled_ = false;
}

bool RomEmulation::servesBoot() const {
    return enabled_ &&
           std::any_of(written_.begin(), written_.end(), [](std::uint8_t byte) { return byte != erased; });
}

} // namespace TAVO::simulator
