#include <tavo/trace/segment.h>

#include <algorithm>

#include <tavo/client/wire/byte_order.h>
#include <tavo/trace/pcapng_format.h>

namespace TAVO::trace {

namespace {

using Span = std::span<const std::uint8_t>;

constexpr std::uint16_t typeIpv4 = 0x0800;
constexpr std::uint16_t typeIpv6 = 0x86DD;
constexpr std::uint8_t tcp = 6;

std::uint16_t load16(Span bytes, std::size_t place) {
    return TAVOX::loadBigEndian<std::uint16_t>(bytes.data() + place);
}

Span behind(Span bytes, std::size_t count) { return bytes.subspan(std::min(bytes.size(), count)); }

/// An IP packet of the given type; anything for others.
Span ofType(std::uint16_t type, Span bytes) { return type == typeIpv4 || type == typeIpv6 ? bytes : Span(); }

Span ofEthernet(Span bytes) {
    constexpr int mostTags = 4;
    std::size_t place = 12;
    for (int tags = 0; tags <= mostTags && bytes.size() >= place + 2; ++tags) {
        const auto type = load16(bytes, place);
        if (type != 0x8100 && type != 0x88A8 && type != 0x9100)
            return ofType(type, bytes.subspan(place + 2));
        place += 4;
    }
    return {};
}

/// The packet without what the link puts before it.
Span ipPacketIn(const Packet& packet) {
    const auto bytes = packet.bytes;
    switch (packet.linkType) {
    case pcapng::linkEthernet:
        return ofEthernet(bytes);
    case pcapng::linkNull:
    case pcapng::linkLoop:
        return behind(bytes, 4); // the packet itself tells its version
    case pcapng::linkLinuxCooked:
        return bytes.size() < 16 ? Span() : ofType(load16(bytes, 14), bytes.subspan(16));
    case pcapng::linkLinuxCooked2:
        return bytes.size() < 20 ? Span() : ofType(load16(bytes, 0), bytes.subspan(20));
    case pcapng::linkRaw:
    case pcapng::linkIpv4:
    case pcapng::linkIpv6:
        return bytes;
    default:
        return {};
    }
}

Endpoint endpoint(bool isIpv6, Span address) {
    Endpoint end;
    end.isIpv6 = isIpv6;
    std::ranges::copy(address, end.address.begin());
    return end;
}

std::optional<Segment> tcpSegment(Endpoint from, Endpoint to, Span bytes) {
    constexpr std::size_t shortest = 20;
    if (bytes.size() < shortest)
        return std::nullopt;
    const std::size_t head = static_cast<std::size_t>(bytes[12] >> 4) * 4;
    if (head < shortest || head > bytes.size())
        return std::nullopt;
    Segment segment;
    segment.from = from;
    segment.to = to;
    segment.from.port = load16(bytes, 0);
    segment.to.port = load16(bytes, 2);
    segment.sequence = TAVOX::loadBigEndian<std::uint32_t>(bytes.data() + 4);
    segment.acknowledged = TAVOX::loadBigEndian<std::uint32_t>(bytes.data() + 8);
    segment.isEnd = (bytes[13] & 5) != 0;
    segment.isSyn = (bytes[13] & 2) != 0;
    segment.hasAcknowledged = (bytes[13] & 16) != 0;
    segment.payload = bytes.subspan(head);
    return segment;
}

std::optional<Segment> inIpv4(Span bytes) {
    constexpr std::size_t shortest = 20;
    if (bytes.size() < shortest)
        return std::nullopt;
    const std::size_t head = static_cast<std::size_t>(bytes[0] & 15) * 4;
    const std::size_t total = load16(bytes, 2);
    const bool isFragment = (load16(bytes, 6) & 0x3FFF) != 0;
    // A machine that leaves the division into packets to its network card captures packets of length 0.
    const auto end = total == 0 ? bytes.size() : std::min(total, bytes.size());
    if (head < shortest || head > end || isFragment || bytes[9] != tcp)
        return std::nullopt;
    return tcpSegment(endpoint(false, bytes.subspan(12, 4)), endpoint(false, bytes.subspan(16, 4)),
                      bytes.first(end).subspan(head));
}

std::optional<Segment> inIpv6(Span bytes) {
    constexpr std::size_t head = 40;
    constexpr int mostExtensions = 16;
    if (bytes.size() < head)
        return std::nullopt;
    const std::size_t length = load16(bytes, 4);
    const auto from = endpoint(true, bytes.subspan(8, 16));
    const auto to = endpoint(true, bytes.subspan(24, 16));
    auto next = bytes[6];
    auto rest =
        bytes.subspan(head, length == 0 ? bytes.size() - head : std::min(length, bytes.size() - head));
    for (int extensions = 0; extensions < mostExtensions && next != tcp; ++extensions) {
        const bool isKnown = next == 0 || next == 43 || next == 60;
        if (!isKnown || rest.size() < 8)
            return std::nullopt;
        next = rest[0];
        rest = behind(rest, (std::size_t{1} + rest[1]) * 8);
    }
    return next == tcp ? tcpSegment(from, to, rest) : std::nullopt;
}

} // namespace

std::string Endpoint::text() const {
    constexpr auto digits = "0123456789abcdef";
    std::string text;
    if (!isIpv6) {
        for (std::size_t i = 0; i < 4; ++i)
            text += (i > 0 ? "." : "") + std::to_string(address[i]);
        return text + ":" + std::to_string(port);
    }
    for (std::size_t i = 0; i < address.size(); ++i) {
        text += i > 0 && i % 2 == 0 ? ":" : "";
        text += digits[address[i] >> 4];
        text += digits[address[i] & 15];
    }
    return "[" + text + "]:" + std::to_string(port);
}

std::optional<Segment> segmentIn(const Packet& packet) {
    const auto bytes = ipPacketIn(packet);
    if (bytes.empty())
        return std::nullopt;
    if (bytes[0] >> 4 == 4)
        return inIpv4(bytes);
    return bytes[0] >> 4 == 6 ? inIpv6(bytes) : std::nullopt;
}

} // namespace TAVO::trace
