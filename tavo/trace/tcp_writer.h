#pragma once

#include <array>
#include <cstdint>
#include <span>

#include <tavo/trace/pcapng_writer.h>

namespace TAVO::trace {

/// Writes a run of bytes in two directions as the packets of a TCP connection, with invented headers: from
/// 192.0.2.1 and a port that tells connections apart, to 192.0.2.2 and the usual port of a device.
class TcpWriter {
public:
    enum class Side { client, device };

    /// Writes the packets that open the connection.
    TcpWriter(PcapngWriter& file, std::uint32_t number, PcapngWriter::Time time);

    void data(Side from, std::span<const std::uint8_t> bytes, PcapngWriter::Time time);
    /// Writes the packets that close the connection.
    void close(PcapngWriter::Time time);

    /// The most bytes of a packet without its headers.
    static constexpr std::size_t longestSegment = 32768;

private:
    struct Flags {
        bool fin = false;
        bool syn = false;
        bool psh = false;
        bool ack = false;
    };

    void packet(Side from, Flags flags, std::span<const std::uint8_t> payload, PcapngWriter::Time time);

    PcapngWriter& file_;
    std::uint16_t port_;
    /// The next sequence number of each side.
    std::array<std::uint32_t, 2> next_{};
    /// Counts the packets of each side.
    std::array<std::uint16_t, 2> packets_{};
};

} // namespace TAVO::trace
