#pragma once

#include <array>
#include <compare>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include <tavo/trace/pcapng_reader.h>

namespace TAVO::trace {

/// One end of a TCP connection.
struct Endpoint {
    bool isIpv6 = false;
    std::array<std::uint8_t, 16> address{};
    std::uint16_t port = 0;
    // NOLINTNEXTLINE(clang-diagnostic-zero-as-null-pointer-constant): the compiler's own comparison with zero
    auto operator<=>(const Endpoint&) const = default;
    std::string text() const;
};

/// What a packet carries of a TCP connection.
struct Segment {
    Endpoint from;
    Endpoint to;
    std::uint32_t sequence = 0;
    std::uint32_t acknowledged = 0;
    bool hasAcknowledged = false;
    bool isSyn = false;
    bool isEnd = false; ///< FIN or RST
    std::span<const std::uint8_t> payload;
};

/// The segment in a packet; empty for anything else, fragments included.
std::optional<Segment> segmentIn(const Packet& packet);

} // namespace TAVO::trace
