#include <tavo/trace/pcapng_writer.h>

#include <array>
#include <bit>
#include <cstring>
#include <utility>

#include <tavo/trace/pcapng_format.h>

namespace TAVO::trace {

namespace {

constexpr std::size_t lengthPlace = 4;

} // namespace

PcapngWriter::PcapngWriter(Write write, std::string_view program, std::string_view interface)
    : write_(std::move(write)) {
    begin(pcapng::sectionHeader);
    word(pcapng::byteOrderMagic);
    half(1); // version 1.0
    half(0);
    word(0xFFFFFFFF); // the length of the section is not known
    word(0xFFFFFFFF);
    option(pcapng::userApplication, program);
    option(pcapng::endOfOptions, "");
    end();

    constexpr std::array<std::uint8_t, 1> nanoseconds{9};
    begin(pcapng::interfaceDescription);
    half(pcapng::linkRaw);
    half(0);
    word(0); // no limit on packets
    option(pcapng::interfaceName, interface);
    option(pcapng::timeResolution, nanoseconds);
    option(pcapng::endOfOptions, "");
    end();
}

void PcapngWriter::packet(Time time, std::span<const std::uint8_t> head,
                          std::span<const std::uint8_t> payload) {
    const auto nanoseconds = static_cast<std::uint64_t>(
        std::chrono::duration_cast<std::chrono::nanoseconds>(time.time_since_epoch()).count());
    const auto length = static_cast<std::uint32_t>(head.size() + payload.size());
    begin(pcapng::enhancedPacket);
    word(0);
    word(static_cast<std::uint32_t>(nanoseconds >> 32));
    word(static_cast<std::uint32_t>(nanoseconds));
    word(length);
    word(length);
    bytes(head);
    bytes(payload);
    pad();
    end();
}

void PcapngWriter::begin(std::uint32_t type) {
    block_.clear();
    word(type);
    word(0);
}

// Numbers are in the byte order of the machine, which the magic number tells.
void PcapngWriter::half(std::uint16_t number) {
    for (const auto byte : std::bit_cast<std::array<std::uint8_t, sizeof number>>(number))
        block_.push_back(byte);
}

void PcapngWriter::word(std::uint32_t number) {
    for (const auto byte : std::bit_cast<std::array<std::uint8_t, sizeof number>>(number))
        block_.push_back(byte);
}

void PcapngWriter::bytes(std::span<const std::uint8_t> bytes) {
    block_.insert(block_.end(), bytes.begin(), bytes.end());
}

void PcapngWriter::pad() { block_.resize((block_.size() + 3) / 4 * 4); }

void PcapngWriter::option(std::uint16_t code, std::span<const std::uint8_t> value) {
    half(code);
    half(static_cast<std::uint16_t>(value.size()));
    bytes(value);
    pad();
}

void PcapngWriter::option(std::uint16_t code, std::string_view text) {
    text = text.substr(0, 1024);
    option(code, {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()});
}

void PcapngWriter::end() {
    const auto length = static_cast<std::uint32_t>(block_.size() + sizeof(std::uint32_t));
    word(length);
    std::memcpy(block_.data() + lengthPlace, &length, sizeof length);
    write_(block_);
}

} // namespace TAVO::trace
