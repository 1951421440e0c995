#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace TAVO::trace {

/// Writes a pcapng file of IPv4 packets without a link layer, with times in nanoseconds.
class PcapngWriter {
public:
    /// Takes one whole block, so that what is written is a valid file after each call.
    using Write = std::function<void(std::span<const std::uint8_t>)>;
    using Time = std::chrono::system_clock::time_point;

    /// Writes the head of the file.
    /// @param program what made the file.
    /// @param interface what the packets passed.
    PcapngWriter(Write write, std::string_view program, std::string_view interface);

    /// Writes one packet, which consists of the two parts.
    void packet(Time time, std::span<const std::uint8_t> head, std::span<const std::uint8_t> payload);

private:
    void begin(std::uint32_t type);
    void half(std::uint16_t number);
    void word(std::uint32_t number);
    void bytes(std::span<const std::uint8_t> bytes);
    void pad();
    void option(std::uint16_t code, std::span<const std::uint8_t> value);
    void option(std::uint16_t code, std::string_view text);
    /// Sets the length in both places, and writes the block.
    void end();

    Write write_;
    std::vector<std::uint8_t> block_;
};

} // namespace TAVO::trace
