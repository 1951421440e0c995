#include <tavo/simulator/internal/request_assembler.h>

#include <utility>

#include <tavo/client/wire/byte_order.h>
#include <tavo/simulator/internal/limits.h>

namespace TAVO::simulator {

namespace {

constexpr std::size_t headSize = 8;
constexpr std::size_t callHeadSize = 12;
constexpr std::size_t countOffset = 4;
constexpr std::size_t parameterSizeOffset = 8;

} // namespace

void RequestAssembler::feed(std::span<const std::uint8_t> bytes) {
    bytes_.insert(bytes_.end(), bytes.begin(), bytes.end());
}

RequestAssembler::State RequestAssembler::scan() {
    if (known_ == 0) {
        if (bytes_.size() < headSize)
            return State::incomplete;
        callsLeft_ = TAVOX::loadBigEndian<std::uint32_t>(bytes_.data() + countOffset);
        known_ = headSize;
    }
    while (callsLeft_ > 0) {
        if (known_ + callHeadSize > limits::requestBytes)
            return State::tooLarge;
        if (bytes_.size() < known_ + callHeadSize)
            return State::incomplete;
        const auto size = TAVOX::loadBigEndian<std::uint32_t>(bytes_.data() + known_ + parameterSizeOffset);
        const auto end = known_ + callHeadSize + size;
        if (size > limits::parameterBytes || end > limits::requestBytes)
            return State::tooLarge;
        if (bytes_.size() < end)
            return State::incomplete;
        known_ = end;
        --callsLeft_;
    }
    return State::complete;
}

std::vector<std::uint8_t> RequestAssembler::take() {
    const auto end = bytes_.begin() + static_cast<std::ptrdiff_t>(std::exchange(known_, 0));
    if (end == bytes_.end())
        return std::exchange(bytes_, {});
    std::vector<std::uint8_t> request(bytes_.begin(), end);
    bytes_.erase(bytes_.begin(), end);
    return request;
}

} // namespace TAVO::simulator
