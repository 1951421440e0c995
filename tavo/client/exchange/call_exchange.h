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
class Error;
class Object_v1_0;

/// Sends a batch of Methods as one request, and reads the one reply into them. TAVOXDevice does so for you;
/// use a CallExchange to build a device class of your own over a Transport. One thread at a time.
class TAVO_API CallExchange {
public:
    /// Sends nothing yet. `transport` must outlive the exchange.
    explicit CallExchange(Transport& transport)
        : transport_(&transport) {}
    /// The same for the calls of `owner`, which must outlive it as well. Refuses Methods of other devices, if
    /// these are of exactly the class `kind`; devices of other classes may forward calls to the owner.
    CallExchange(Transport& transport, const Device& owner, const std::type_info& kind)
        : transport_(&transport)
        , owner_(&owner)
        , kind_(&kind) {}

    /// Sends the batch as one request, reads the whole reply, and stores each result in its Method. Blocks
    /// until then. Throws what TAVOXDevice::callMethods throws.
    /// @param lockId what the device gave for its lock; 0 when the lock is not held.
    void run(std::uint32_t lockId, std::span<const std::shared_ptr<Method>> batch);
    /// The same for a copy of `batch`, so that encoders and decoders may edit theirs meanwhile.
    void run(std::uint32_t lockId, const std::deque<std::shared_ptr<Method>>& batch);

    /// Gives the Method a result that the device has sent before: no exchange.
    /// @throws what run() throws for a Method that it refuses, and for such a result.
    void answer(const std::shared_ptr<Method>& method, std::span<const std::uint8_t> result) const;

    /// Goes on over another transport to the same far end, such as one around the former. Between two
    /// exchanges only; `transport` must outlive the exchange.
    void setTransport(Transport& transport) noexcept { transport_ = &transport; }

    /// Whether the next bytes to arrive are the beginning of a reply. False after an exchange that sent at
    /// least a part of its request, or tried to, and did not read the reply to its end.
    bool isInStep() const noexcept { return inStep_; }

private:
    struct Progress;
    void converse(std::uint32_t lockId, std::span<const std::shared_ptr<Method>> batch, Progress& progress);
    void addFacts(Error& failure, const Method* concerned) const;
    const Object_v1_0& addressee(const std::shared_ptr<Method>& method) const;

    Transport* transport_;
    const Device* owner_ = nullptr;
    const std::type_info* kind_ = nullptr;
    bool inStep_ = true;
    ReplyBuffer buffer_;
    TAVOX::OutputStream::SpareChunks spareChunks_;
    /// Empty between exchanges. Kept for its memory, which the next copy of a batch uses.
    std::vector<std::shared_ptr<Method>> spareBatch_;
};

} // namespace TAVO
