#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <span>
#include <vector>

#include <tavo/trace/segment.h>

namespace TAVO::trace {

/// Puts the segments of one TCP connection in order again: each byte once, and no answer before what it
/// acknowledges. Holds at most 16 MiB of segments that came too early.
class TcpAssembler {
public:
    /// @param side 0 or 1, as given to take().
    using Deliver =
        std::function<void(std::size_t side, std::span<const std::uint8_t>, std::chrono::nanoseconds)>;

    explicit TcpAssembler(Deliver deliver)
        : deliver_(std::move(deliver)) {}

    void take(std::size_t side, const Segment& segment, std::chrono::nanoseconds time);
    /// Delivers what still waits and can be delivered.
    void finish() { drain(true); }
    /// Whether bytes are missing before some that were captured.
    bool lacksBytes() const;
    /// Whether both sides have said that they send no more.
    bool hasEnded() const { return sides_[0].hasEnded && sides_[1].hasEnded; }

private:
    struct Piece {
        std::vector<std::uint8_t> bytes;
        std::chrono::nanoseconds time{0};
        bool hasAcknowledged = false;
        std::uint32_t acknowledged = 0;
    };
    struct Side {
        bool isKnown = false;
        bool hasEnded = false;
        /// The sequence number of the next byte to deliver, and how many were delivered before it.
        std::uint32_t next = 0;
        std::uint64_t position = 0;
        std::map<std::uint64_t, Piece> waiting;
    };

    bool mayDeliver(const Side& other, const Piece& piece) const;
    bool deliverNext(std::size_t side, bool anyway);
    void drain(bool anyway);

    Deliver deliver_;
    std::array<Side, 2> sides_;
    std::size_t waitingBytes_ = 0;
};

} // namespace TAVO::trace
