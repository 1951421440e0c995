#include <tavo/client/wire/input_stream.h>

namespace TAVOX {

bool InputStream::gather(std::uint64_t count) noexcept {
    if (count > outstanding_)
        return false;
    const auto bytes = source_->gather(count);
    if (bytes.empty())
        return false;
    outstanding_ -= count;
    arrived_ = count;
    cursor_ = bytes.data();
    return true;
}

void InputStream::receive(std::uint8_t* destination, std::uint64_t count) noexcept {
    if (source_->receive(destination, count))
        outstanding_ -= count;
    else
        failed_ = true;
}

} // namespace TAVOX
