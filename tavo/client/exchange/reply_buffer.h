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
    std::span<const std::uint8_t> receive(Transport& transport, std::uint64_t length);
    /// Receives the next `length` bytes and drops them. Throws what receive() throws.
    void discard(Transport& transport, std::uint64_t length);
    /// Frees a buffer above 64 KiB; a smaller one is kept for the next exchange.
    void shrink() noexcept;

private:
    struct Free {
        void operator()(std::uint8_t* bytes) const noexcept { std::free(bytes); }
    };

    void grow(std::size_t capacity);

    std::unique_ptr<std::uint8_t, Free> bytes_;
    std::size_t capacity_ = 0;
};

} // namespace TAVO
