#include <tavo/server/request_assembler.h>

#include <utility>

#include <tavo/client/wire/byte_order.h>
#include <tavo/server/limits.h>

namespace TAVO::server {

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
    const auto available = bytes_.size() - begin_;
    const auto* bytes = bytes_.data() + begin_;
    if (known_ == 0) {
        if (available < headSize)
            return State::incomplete;
        callsLeft_ = TAVOX::loadBigEndian<std::uint32_t>(bytes + countOffset);
        known_ = headSize;
    }
    while (callsLeft_ > 0) {
        if (known_ + callHeadSize > limits::requestBytes)
            return State::tooLarge;
        if (available < known_ + callHeadSize)
            return State::incomplete;
        const auto size = TAVOX::loadBigEndian<std::uint32_t>(bytes + known_ + parameterSizeOffset);
        const auto end = known_ + callHeadSize + size;
        if (size > limits::parameterBytes || end > limits::requestBytes)
            return State::tooLarge;
        if (available < end)
            return State::incomplete;
        known_ = end;
        --callsLeft_;
    }
    return State::complete;
}

std::vector<std::uint8_t> RequestAssembler::take() {
    const auto begin = bytes_.begin() + static_cast<std::ptrdiff_t>(begin_);
    const auto end = begin + static_cast<std::ptrdiff_t>(std::exchange(known_, 0));
    if (begin_ == 0 && end == bytes_.end())
        return std::exchange(bytes_, {});
    std::vector<std::uint8_t> request(begin, end);
    begin_ += request.size();
    // This copies the rest, so not after each of many small requests. Into new memory, because the old may
    // have the size of the largest request.
    if (begin_ >= bytes_.size() / 2) {
        bytes_ = std::vector<std::uint8_t>(end, bytes_.end());
        begin_ = 0;
    }
    return request;
}

} // namespace TAVO::server
