#pragma once

#include <cstdint>
#include <deque>
#include <memory>
#include <span>

#include <tavo/client/export.h>
#include <tavo/client/object/method.h>
#include <tavo/client/wire/reply_buffer.h>
#include <tavo/client/wire/transport.h>

namespace TAVO {

/// Frames a batch of Methods as one request, and reads the one reply into them. Knows nothing of sockets: it
/// runs over a Transport, which must outlive it. Keeps a small buffer from one exchange to the next. One
/// thread at a time.
class TAVO_API CallExchange {
public:
    /// Sends nothing.
    explicit CallExchange(Transport& transport)
        : transport_(transport) {}

    /// Sends the batch as one request and reads the whole reply.
    /// @param lockId the number at the head of the request; 0 when the lock is not held.
    /// @throws what TAVOXDevice::callMethods documents.
    void run(std::uint32_t lockId, std::span<const std::shared_ptr<Method>> batch);
    void run(std::uint32_t lockId, const std::deque<std::shared_ptr<Method>>& batch);

private:
    template <class Batch>
    void runBatch(std::uint32_t lockId, const Batch& batch);

    Transport& transport_;
    ReplyBuffer buffer_;
};

} // namespace TAVO
