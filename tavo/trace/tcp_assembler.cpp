#include <tavo/trace/tcp_assembler.h>

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace TAVO::trace {

namespace {

constexpr std::size_t mostWaitingBytes = std::size_t{16} << 20;
/// What a segment takes besides its bytes.
constexpr std::size_t segmentBytes = 128;

std::int64_t distance(std::uint32_t from, std::uint32_t to) { return static_cast<std::int32_t>(to - from); }

} // namespace

void TcpAssembler::take(std::size_t side, const Segment& segment, std::chrono::nanoseconds time) {
    auto& own = sides_[side];
    if (segment.isSyn) {
        if (!own.isKnown)
            own.next = segment.sequence + 1;
        own.isKnown = true;
        return;
    }
    if (!own.isKnown && !segment.payload.empty()) {
        own.next = segment.sequence;
        own.isKnown = true;
    }
    own.hasEnded = own.hasEnded || segment.isEnd;
    auto bytes = segment.payload;
    auto offset = distance(own.next, segment.sequence);
    if (offset < 0) {
        const auto known = static_cast<std::size_t>(-offset);
        bytes = bytes.subspan(std::min(bytes.size(), known));
        offset = 0;
    }
    if (!bytes.empty()) {
        auto& piece = own.waiting[own.position + static_cast<std::uint64_t>(offset)];
        if (piece.bytes.size() < bytes.size()) {
            waitingBytes_ += bytes.size() - piece.bytes.size() + (piece.bytes.empty() ? segmentBytes : 0);
            piece = {{bytes.begin(), bytes.end()}, time, segment.hasAcknowledged, segment.acknowledged};
        }
    }
    drain(false);
    if (waitingBytes_ <= mostWaitingBytes)
        return;
    drain(true);
    if (waitingBytes_ > mostWaitingBytes)
        throw std::runtime_error("bytes are missing in the capture");
}

bool TcpAssembler::mayDeliver(const Side& other, const Piece& piece) const {
    return !piece.hasAcknowledged || !other.isKnown ||
           distance(other.next, piece.acknowledged) <= (other.hasEnded ? 1 : 0);
}

bool TcpAssembler::deliverNext(std::size_t side, bool anyway) {
    auto& own = sides_[side];
    const auto first = own.waiting.begin();
    if (first == own.waiting.end() || first->first > own.position)
        return false;
    if (!anyway && !mayDeliver(sides_[1 - side], first->second))
        return false;
    const auto begin = first->first;
    const auto piece = std::move(first->second);
    own.waiting.erase(first);
    waitingBytes_ -= piece.bytes.size() + segmentBytes;
    const auto known = own.position - begin;
    if (known < piece.bytes.size()) {
        const auto fresh = std::span(piece.bytes).subspan(static_cast<std::size_t>(known));
        own.position += fresh.size();
        own.next += static_cast<std::uint32_t>(fresh.size());
        deliver_(side, fresh, piece.time);
    }
    return true;
}

void TcpAssembler::drain(bool anyway) {
    bool goesOn = true;
    while (goesOn) {
        goesOn = deliverNext(0, false) || deliverNext(1, false);
        if (!goesOn && anyway)
            goesOn = deliverNext(0, true) || deliverNext(1, true);
    }
}

bool TcpAssembler::lacksBytes() const { return !sides_[0].waiting.empty() || !sides_[1].waiting.empty(); }

} // namespace TAVO::trace
