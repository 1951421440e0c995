#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace TAVO::server {

/// Told the parts of a request while it arrives.
class RequestReceiver {
public:
    virtual ~RequestReceiver() = default;
    /// The next bytes of the head, where feed() got them; `offset` of them came before.
    virtual void headBytes(std::span<const std::uint8_t> bytes, std::size_t offset) = 0;
    virtual void head(std::uint32_t lockId, std::uint32_t callCount) = 0;
    virtual void callBegins(std::uint32_t instanceId, std::uint32_t methodId, std::uint32_t size) = 0;
    /// The next bytes of the parameters, where feed() got them. Not called for a call without any.
    virtual void parameterBytes(std::span<const std::uint8_t> bytes) = 0;
    virtual void callEnds() = 0;
};

/// Takes a request apart while it arrives, and holds no more of it than the head of one call.
class RequestScanner {
public:
    /// Takes the next bytes. Returns how many belong to this request: fewer than given when it ends before.
    std::size_t feed(std::span<const std::uint8_t> bytes, RequestReceiver& receiver);
    bool isComplete() const { return part_ == Part::end; }

private:
    enum class Part { head, callHead, parameters, end };

    bool gather(std::span<const std::uint8_t>& bytes, std::size_t wanted);
    bool proceed(std::span<const std::uint8_t>& bytes, RequestReceiver& receiver);
    void endCall(RequestReceiver& receiver);

    Part part_ = Part::head;
    std::vector<std::uint8_t> held_;
    std::uint32_t callsLeft_ = 0;
    std::uint32_t parametersLeft_ = 0;
};

} // namespace TAVO::server
