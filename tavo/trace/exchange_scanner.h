#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <span>
#include <vector>

#include <tavo/server/frames.h>
#include <tavo/server/reply_scanner.h>
#include <tavo/server/request_scanner.h>

namespace TAVO::trace {

/// Which method of which object.
struct CallId {
    std::uint32_t instanceId = 0;
    std::uint32_t methodId = 0;
};

using Bytes = std::span<const std::uint8_t>;

/// Told the parts of the exchanges of one connection, in the order in which they pass. Spans are parts of
/// what the scanner was given.
class ExchangeReceiver {
public:
    virtual ~ExchangeReceiver() = default;
    /// The first byte of a request is there.
    virtual void requestArrives() {}
    virtual void requestHeadBytes(Bytes, std::size_t /*offset*/) {}
    virtual void requestBegins(std::uint32_t /*lockId*/, std::uint32_t /*callCount*/) {}
    virtual void callBegins(const CallId&, std::uint32_t /*size*/) {}
    virtual void parameterBytes(Bytes) {}
    virtual void callEnds() {}
    virtual void requestEnds() {}
    virtual void replyBegins(const std::optional<server::ErrorFrame>&, std::uint32_t /*resultCount*/) {}
    /// @param call null for more results than calls.
    virtual void resultBegins(const CallId* /*call*/, std::uint32_t /*size*/) {}
    virtual void resultBytes(Bytes) {}
    virtual void resultEnds() {}
    virtual void replyEnds() {}
};

/// Takes the bytes of one connection apart and pairs replies with requests. Keeps of a request nothing but
/// what it calls, until it is answered.
class ExchangeScanner final : private server::RequestReceiver, private server::ReplyReceiver {
public:
    explicit ExchangeScanner(ExchangeReceiver& receiver)
        : receiver_(receiver) {}

    /// Takes bytes from the client.
    void sent(Bytes bytes);
    /// Takes bytes from the device.
    /// @throws std::runtime_error for bytes that are no reply to a request. Useless from then on.
    void received(Bytes bytes);
    /// Requests without a complete reply.
    std::size_t unanswered() const { return requests_.size(); }
    bool isWithinRequest() const { return isWithinRequest_; }

private:
    void headBytes(Bytes bytes, std::size_t offset) override { receiver_.requestHeadBytes(bytes, offset); }
    void head(std::uint32_t lockId, std::uint32_t callCount) override {
        receiver_.requestBegins(lockId, callCount);
    }
    void callBegins(std::uint32_t instanceId, std::uint32_t methodId, std::uint32_t size) override;
    void parameterBytes(Bytes bytes) override { receiver_.parameterBytes(bytes); }
    void callEnds() override { receiver_.callEnds(); }

    void head(Bytes status, const std::optional<server::ErrorFrame>& error,
              std::uint32_t resultCount) override;
    void resultBegins(std::uint32_t size) override;
    void resultBytes(Bytes bytes) override { receiver_.resultBytes(bytes); }
    void resultEnds() override { receiver_.resultEnds(); }

    ExchangeReceiver& receiver_;
    server::RequestScanner request_;
    server::ReplyScanner reply_;
    bool isWithinRequest_ = false;
    /// What the requests call that have no complete reply; the first is being answered.
    std::deque<std::vector<CallId>> requests_;
    std::size_t results_ = 0;
};

} // namespace TAVO::trace
