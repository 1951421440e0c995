#pragma once

#include <cstdint>
#include <deque>
#include <memory>
#include <span>
#include <typeinfo>
#include <vector>

#include <tavo/client/exchange/reply_buffer.h>
#include <tavo/client/export.h>
#include <tavo/client/object/method.h>
#include <tavo/client/wire/transport.h>

namespace TAVO {

class Device;
class Object_v1_0;

/// Frames a batch of Methods as one request, and reads the one reply into them. Knows nothing of sockets: it
/// runs over a Transport, which must outlive it. Keeps a small buffer from one exchange to the next. One
/// thread at a time.
class TAVO_API CallExchange {
public:
    /// Sends nothing.
    explicit CallExchange(Transport& transport)
        : transport_(transport) {}
    /// The same for the exchanges of `owner`, which must outlive it.
    /// @param kind a class of devices: Methods whose object belongs to another device of exactly this class
    ///        are refused. Those of other classes may forward their calls to the owner.
    CallExchange(Transport& transport, const Device& owner, const std::type_info& kind)
        : transport_(transport)
        , owner_(&owner)
        , kind_(&kind) {}

    /// Sends the batch as one request and reads the whole reply.
    /// @param lockId the number at the head of the request; 0 when the lock is not held.
    /// @throws what TAVOXDevice::callMethods documents.
    void run(std::uint32_t lockId, std::span<const std::shared_ptr<Method>> batch);
    /// The same over a copy of the sequence: what encoders and decoders do to theirs changes nothing.
    void run(std::uint32_t lockId, const std::deque<std::shared_ptr<Method>>& batch);

    /// Whether the bytes that arrive next begin the next reply: false after an exchange that sent its
    /// request, or tried to, and did not read the reply to its end.
    bool isInStep() const noexcept { return inStep_; }

private:
    struct Progress;
    void converse(std::uint32_t lockId, std::span<const std::shared_ptr<Method>> batch, Progress& progress);
    const Object_v1_0& addressee(const std::shared_ptr<Method>& method) const;

    Transport& transport_;
    const Device* owner_ = nullptr;
    const std::type_info* kind_ = nullptr;
    bool inStep_ = true;
    ReplyBuffer buffer_;
    TAVOX::OutputStream::SpareChunks spareChunks_;
    /// Empty between the exchanges: spares each of them its memory.
    std::vector<std::shared_ptr<Method>> spareBatch_;
};

} // namespace TAVO
