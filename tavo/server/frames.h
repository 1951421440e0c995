#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include <tavo/client/wire/input_stream.h>

namespace TAVO::server {

/// One call of a request. The parameters are borrowed from the request.
struct CallFrame {
    std::uint32_t instanceId = 0;
    std::uint32_t methodId = 0;
    std::span<const std::uint8_t> parameters;
};

/// Reads the calls of a complete request, which must outlive it, one after the other.
class RequestFrame {
public:
    RequestFrame() = default;
    explicit RequestFrame(std::span<const std::uint8_t> request);

    std::uint32_t lockId() const { return lockId_; }
    std::uint32_t callCount() const { return callCount_; }
    CallFrame nextCall();

private:
    TAVOX::InputStream in_{nullptr, 0};
    std::uint32_t lockId_ = 0;
    std::uint32_t callCount_ = 0;
};

/// Replaces the lock id of a complete request.
void setLockId(std::span<std::uint8_t> request, std::uint32_t lockId);

/// What a reply says about the call that failed.
struct ErrorFrame {
    std::uint32_t position = 0;
    std::uint32_t code = 0;
    std::string message;
};

void appendWord(std::vector<std::uint8_t>& bytes, std::uint32_t word);
/// Appends all of a reply but its results: the status, the error if there is one, the number of results.
void appendReplyHead(std::vector<std::uint8_t>& reply, const std::optional<ErrorFrame>& error,
                     std::uint32_t resultCount, std::span<const std::uint8_t> status = {});

} // namespace TAVO::server
