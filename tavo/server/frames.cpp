#include <tavo/server/frames.h>

#include <tavo/client/wire/byte_order.h>

namespace TAVO::server {

RequestFrame::RequestFrame(std::span<const std::uint8_t> request)
    : in_(request.data(), request.size()) {
    lockId_ = static_cast<std::uint32_t>(in_.readInt32());
    callCount_ = static_cast<std::uint32_t>(in_.readInt32());
}

CallFrame RequestFrame::nextCall() {
    CallFrame call;
    call.instanceId = static_cast<std::uint32_t>(in_.readInt32());
    call.methodId = static_cast<std::uint32_t>(in_.readInt32());
    const auto size = static_cast<std::uint32_t>(in_.readInt32());
    call.parameters = {in_.readSpan(size), size};
    return call;
}

void setLockId(std::span<std::uint8_t> request, std::uint32_t lockId) {
    TAVOX::storeBigEndian(request.data(), lockId);
}

void appendWord(std::vector<std::uint8_t>& bytes, std::uint32_t word) {
    bytes.resize(bytes.size() + sizeof word);
    TAVOX::storeBigEndian(bytes.data() + bytes.size() - sizeof word, word);
}

void appendReplyHead(std::vector<std::uint8_t>& reply, const std::optional<ErrorFrame>& error,
                     std::uint32_t resultCount, std::span<const std::uint8_t> status) {
    constexpr std::uint32_t errorHeadBytes = 12;
    appendWord(reply, static_cast<std::uint32_t>(status.size()));
    reply.insert(reply.end(), status.begin(), status.end());
    appendWord(reply, error ? errorHeadBytes + static_cast<std::uint32_t>(error->message.size()) : 0);
    if (error) {
        appendWord(reply, error->position);
        appendWord(reply, error->code);
        appendWord(reply, static_cast<std::uint32_t>(error->message.size()));
        reply.insert(reply.end(), error->message.begin(), error->message.end());
    }
    appendWord(reply, resultCount);
}

} // namespace TAVO::server
