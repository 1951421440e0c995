#include <tavo/trace/tcp_writer.h>

#include <algorithm>
#include <vector>

#include <tavo/client/device/device_factory.h>
#include <tavo/client/wire/byte_order.h>

namespace TAVO::trace {

namespace {

constexpr std::uint32_t clientAddress = 0xC0000201; // 192.0.2.1, of a net for documents
constexpr std::uint32_t deviceAddress = 0xC0000202;
constexpr std::uint16_t firstPort = 49152;
constexpr std::uint32_t ports = 16384;
constexpr std::size_t ipHead = 20;
constexpr std::size_t tcpHead = 20;
constexpr std::uint8_t tcpProtocol = 6;

void store16(std::uint8_t* at, std::uint32_t number) {
    at[0] = static_cast<std::uint8_t>(number >> 8);
    at[1] = static_cast<std::uint8_t>(number);
}

/// Adds bytes to the sum of a checksum; all runs but the last have an even length.
void addTo(std::uint64_t& sum, std::span<const std::uint8_t> bytes) {
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2)
        sum += static_cast<std::uint64_t>(bytes[i]) << 8 | bytes[i + 1];
    if (bytes.size() % 2 != 0)
        sum += static_cast<std::uint64_t>(bytes.back()) << 8;
}

std::uint32_t checksum(std::uint64_t sum) {
    while (sum > 0xFFFF)
        sum = (sum & 0xFFFF) + (sum >> 16);
    return static_cast<std::uint32_t>(~sum & 0xFFFF);
}

} // namespace

TcpWriter::TcpWriter(PcapngWriter& file, std::uint32_t number, PcapngWriter::Time time)
    : file_(file)
    , port_(static_cast<std::uint16_t>(firstPort + number % ports)) {
    packet(Side::client, {.syn = true}, {}, time);
    packet(Side::device, {.syn = true, .ack = true}, {}, time);
    packet(Side::client, {.ack = true}, {}, time);
}

void TcpWriter::data(Side from, std::span<const std::uint8_t> bytes, PcapngWriter::Time time) {
    while (!bytes.empty()) {
        const auto segment = bytes.first(std::min(bytes.size(), longestSegment));
        bytes = bytes.subspan(segment.size());
        packet(from, {.psh = bytes.empty(), .ack = true}, segment, time);
    }
}

void TcpWriter::close(PcapngWriter::Time time) {
    packet(Side::client, {.fin = true, .ack = true}, {}, time);
    packet(Side::device, {.fin = true, .ack = true}, {}, time);
    packet(Side::client, {.ack = true}, {}, time);
}

void TcpWriter::packet(Side from, Flags flags, std::span<const std::uint8_t> payload,
                       PcapngWriter::Time time) {
    constexpr std::array<std::uint8_t, 8> options{2, 4, 0x80, 0x00, 1, 3, 3, 14}; // segments, window scale
    const bool isClient = from == Side::client;
    const std::size_t self = isClient ? 0 : 1;
    const std::size_t options_size = flags.syn ? options.size() : 0;
    const auto headSize = ipHead + tcpHead + options_size;
    std::array<std::uint8_t, ipHead + tcpHead + options.size()> head{};

    auto* ip = head.data();
    ip[0] = 0x45; // version 4, a head of 20 bytes
    store16(ip + 2, static_cast<std::uint32_t>(headSize + payload.size()));
    store16(ip + 4, ++packets_[self]);
    ip[6] = 0x40; // do not fragment
    ip[8] = 64;   // hops
    ip[9] = tcpProtocol;
    TAVOX::storeBigEndian(ip + 12, isClient ? clientAddress : deviceAddress);
    TAVOX::storeBigEndian(ip + 16, isClient ? deviceAddress : clientAddress);
    std::uint64_t ofIp = 0;
    addTo(ofIp, {ip, ipHead});
    store16(ip + 10, checksum(ofIp));

    auto* tcp = ip + ipHead;
    const std::uint32_t devicePort = DeviceFactory::DefaultPort;
    store16(tcp, isClient ? port_ : devicePort);
    store16(tcp + 2, isClient ? devicePort : port_);
    TAVOX::storeBigEndian(tcp + 4, next_[self]);
    TAVOX::storeBigEndian(tcp + 8, flags.ack ? next_[1 - self] : 0);
    tcp[12] = static_cast<std::uint8_t>((tcpHead + options_size) / 4 << 4);
    tcp[13] = static_cast<std::uint8_t>((flags.fin ? 1 : 0) | (flags.syn ? 2 : 0) | (flags.psh ? 8 : 0) |
                                        (flags.ack ? 16 : 0));
    store16(tcp + 14, 0xFFFF); // window
    std::copy_n(options.begin(), options_size, tcp + tcpHead);
    std::uint64_t ofTcp = tcpProtocol + (headSize - ipHead) + payload.size();
    addTo(ofTcp, {ip + 12, 8}); // the addresses
    addTo(ofTcp, {tcp, headSize - ipHead});
    addTo(ofTcp, payload);
    store16(tcp + 16, checksum(ofTcp));

    file_.packet(time, std::span(head).first(headSize), payload);
    next_[self] += static_cast<std::uint32_t>(payload.size()) + (flags.syn || flags.fin ? 1 : 0);
}

} // namespace TAVO::trace
