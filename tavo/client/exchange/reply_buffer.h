#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <span>

#include <tavo/client/export.h>
#include <tavo/client/wire/transport.h>

namespace TAVO {

/// Holds one received block of a reply at a time. Memory is taken only as bytes arrive, never on the word of
/// the peer: a block of any announced size starts in the small buffer and doubles it each time it is full.
class TAVO_API ReplyBuffer {
public:
    /// The next `length` bytes of the reply; valid until the next call. They stay where the transport holds
    /// them when it can give them in place.
    /// @throws NetworkError as Transport::receiveAll; std::bad_alloc.
    std::span<const std::uint8_t> receive(Transport& transport, std::uint64_t length);
    /// Receives the next `length` bytes and drops them.
    void discard(Transport& transport, std::uint64_t length);
    /// Gives back the memory of a large block; the small buffer is kept for the next exchange.
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
