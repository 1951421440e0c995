#include <tavo/client/exchange/reply_buffer.h>

#include <algorithm>
#include <new>
#include <utility>

namespace TAVO {

namespace {

constexpr std::size_t smallCapacity = std::size_t{64} * 1024;

} // namespace

void ReplyBuffer::grow(std::size_t capacity) {
    // realloc, because it can move the pages of large blocks instead of copying their bytes.
    auto* moved = static_cast<std::uint8_t*>(std::realloc(bytes_.get(), capacity));
    if (!moved)
        throw std::bad_alloc();
    static_cast<void>(bytes_.release());
    bytes_.reset(moved);
    capacity_ = capacity;
}

void ReplyBuffer::takeUsed(Transport& transport) {
    const auto used = std::exchange(used_, 0);
    window_ = {};
    if (used > 0)
        static_cast<void>(transport.receiveInPlace(used));
}

void ReplyBuffer::receiveInto(Transport& transport, std::uint8_t* destination, std::uint64_t length) {
    takeUsed(transport);
    transport.receiveAll(destination, length);
}

std::span<const std::uint8_t> ReplyBuffer::receiveBeyondWindow(Transport& transport, std::uint64_t length) {
    takeUsed(transport);
    if (const auto* bytes = transport.receiveInPlace(length)) {
        window_ = transport.held();
        return {bytes, static_cast<std::size_t>(length)};
    }
    if (capacity_ == 0)
        grow(smallCapacity);
    for (std::uint64_t received = 0; received < length;) {
        if (received == capacity_)
            grow(static_cast<std::size_t>(std::min<std::uint64_t>(length, 2 * capacity_)));
        const auto run = std::min<std::uint64_t>(length, capacity_) - received;
        transport.receiveAll(bytes_.get() + received, run);
        received += run;
    }
    return {bytes_.get(), static_cast<std::size_t>(length)};
}

void ReplyBuffer::discard(Transport& transport, std::uint64_t length) {
    while (length > 0) {
        const auto run = std::min<std::uint64_t>(length, smallCapacity);
        receive(transport, run);
        length -= run;
    }
}

void ReplyBuffer::settle(Transport& transport) noexcept {
    try {
        takeUsed(transport);
    } catch (...) { // the transport has failed and says so when it is used next
    }
    if (capacity_ <= smallCapacity)
        return;
    bytes_.reset();
    capacity_ = 0;
}

} // namespace TAVO
