#include <tavo/client/wire/input_stream.h>

namespace TAVOX {

bool InputStream::gather(std::uint64_t count) noexcept {
    if (count > remaining())
        return false;
    const auto bytes = source_->gather({cursor_, static_cast<std::size_t>(arrived_)}, count);
    if (bytes.empty())
        return false;
    outstanding_ -= count - arrived_;
    arrived_ = count;
    cursor_ = bytes.data();
    return true;
}

void InputStream::receiveRaw(std::uint8_t* destination, std::uint64_t count) noexcept {
    if (arrived_ > 0)
        std::memcpy(destination, cursor_, static_cast<std::size_t>(arrived_));
    const auto missing = count - arrived_;
    cursor_ += arrived_;
    destination += arrived_;
    arrived_ = 0;
    if (source_->receive(destination, missing))
        outstanding_ -= missing;
    else
        failed_ = true;
}

} // namespace TAVOX
