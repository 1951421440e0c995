#include <tavo/client/wire/input_stream.h>

namespace TAVOX {

bool InputStream::gather(std::uint64_t count) {
    if (count > outstanding_)
        return false;
    cursor_ = source_->gather(count).data();
    outstanding_ -= count;
    arrived_ = count;
    return true;
}

void InputStream::receive(std::uint8_t* destination, std::uint64_t count) {
    source_->receive(destination, count);
    outstanding_ -= count;
}

} // namespace TAVOX
