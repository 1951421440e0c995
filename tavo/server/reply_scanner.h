#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include <tavo/server/frames.h>

namespace TAVO::server {

/// Told the parts of a reply while it arrives.
class ReplyReceiver {
public:
    virtual ~ReplyReceiver() = default;
    /// All of the reply but its results.
    virtual void head(std::span<const std::uint8_t> status, const std::optional<ErrorFrame>& error,
                      std::uint32_t resultCount) = 0;
    virtual void resultBegins(std::uint32_t size) = 0;
    /// The next bytes of the result. Not called for an empty one.
    virtual void resultBytes(std::span<const std::uint8_t> bytes) = 0;
    virtual void resultEnds() = 0;
};

/// Takes a reply apart while it arrives, and holds no more of it than its head.
class ReplyScanner {
public:
    /// Takes the next bytes. Returns how many belong to this reply: fewer than given when it ends before.
    /// @throws std::runtime_error for a head that makes no sense, or that is longer than 1 MiB.
    std::size_t feed(std::span<const std::uint8_t> bytes, ReplyReceiver& receiver);
    bool isComplete() const { return part_ == Part::end; }

private:
    enum class Part { statusSize, status, errorSize, error, resultCount, resultSize, result, end };

    /// Adds bytes to what is held of the head until it is `wanted` long. Returns whether it is.
    bool gather(std::span<const std::uint8_t>& bytes, std::size_t wanted);
    /// Takes a number of 4 bytes, once all of them are there.
    std::optional<std::uint32_t> word(std::span<const std::uint8_t>& bytes);
    bool proceed(std::span<const std::uint8_t>& bytes, ReplyReceiver& receiver);
    bool proceedInHead(std::span<const std::uint8_t>& bytes, ReplyReceiver& receiver);
    void beginResult(std::uint32_t size, ReplyReceiver& receiver);
    void passResult(std::span<const std::uint8_t>& bytes, ReplyReceiver& receiver);
    void endResult(ReplyReceiver& receiver);

    Part part_ = Part::statusSize;
    std::vector<std::uint8_t> held_;
    std::uint32_t wanted_ = 0;
    std::vector<std::uint8_t> status_;
    std::optional<ErrorFrame> error_;
    std::uint32_t resultsLeft_ = 0;
    std::uint32_t resultLeft_ = 0;
};

} // namespace TAVO::server
