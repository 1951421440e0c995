#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <span>

#include <tavo/client/export.h>
#include <tavo/client/wire/transport.h>

namespace TAVO {

/// Holds one received block of a reply at a time. CallExchange has one. Takes memory only for bytes that have
/// arrived, never for a size that the peer announces: the buffer starts at 64 KiB and doubles when it is
/// full.
class TAVO_API ReplyBuffer {
public:
    /// Blocks until the next `length` bytes have arrived, and returns them; valid until the next call. They
    /// are not copied when the transport has them in its own buffer.
    /// @throws NetworkError as Transport::receiveAll.
    /// @throws std::bad_alloc when there is no memory for them.
    std::span<const std::uint8_t> receive(Transport& transport, std::uint64_t length) {
        if (length > window_.size() - used_)
            return receiveBeyondWindow(transport, length);
        used_ += static_cast<std::size_t>(length);
        return window_.subspan(used_ - static_cast<std::size_t>(length), static_cast<std::size_t>(length));
    }
    /// Stores the next `length` bytes, without a buffer between. Throws what receive() throws.
    void receiveInto(Transport& transport, std::uint8_t* destination, std::uint64_t length);
    /// For the end of a reply: takes from the transport what was received, and frees a buffer above 64 KiB; a
    /// smaller one is kept for the next exchange.
    void settle(Transport& transport) noexcept;
    /// Receives the next `length` bytes and drops them. Throws what receive() throws.
    void discard(Transport& transport, std::uint64_t length);

private:
    struct Free {
        void operator()(std::uint8_t* bytes) const noexcept { std::free(bytes); }
    };

    std::span<const std::uint8_t> receiveBeyondWindow(Transport& transport, std::uint64_t length);
    void takeUsed(Transport& transport);
    void grow(std::size_t capacity);

    /// What the transport holds; the bytes before used_ count as received, but are not taken from it yet.
    std::span<const std::uint8_t> window_;
    std::size_t used_ = 0;
    std::unique_ptr<std::uint8_t, Free> bytes_;
    std::size_t capacity_ = 0;
};

} // namespace TAVO
