#include <tavo/trace/pcapng_reader.h>

#include <algorithm>
#include <array>
#include <cmath>

#include <tavo/client/wire/byte_order.h>
#include <tavo/trace/pcapng_format.h>

namespace TAVO::trace {

namespace {

constexpr std::uint32_t largestBlock = 64u << 20;
constexpr std::uint32_t blockFrame = 12; // type and twice the length
constexpr std::size_t mostInterfaces = 65536;

std::uint32_t load32(const std::uint8_t* bytes, bool isBig) {
    const auto big = TAVOX::loadBigEndian<std::uint32_t>(bytes);
    if (isBig)
        return big;
    return big >> 24 | (big >> 8 & 0xFF00) | (big << 8 & 0xFF0000) | big << 24;
}

std::chrono::nanoseconds timeOf(std::uint64_t ticks, std::uint8_t resolution, std::int64_t offset) {
    constexpr std::uint64_t perSecond = 1'000'000'000;
    std::uint64_t nanoseconds = 0;
    if (resolution & 0x80) {
        const auto bits = static_cast<unsigned>(resolution & 0x7F);
        const auto seconds = bits < 64 ? ticks >> bits : 0;
        const auto rest = static_cast<double>(bits < 64 ? ticks - (seconds << bits) : ticks);
        nanoseconds =
            seconds * perSecond + static_cast<std::uint64_t>(std::ldexp(rest, -static_cast<int>(bits)) * 1e9);
    } else {
        nanoseconds = ticks;
        for (int power = resolution; power < 9; ++power)
            nanoseconds *= 10;
        for (int power = 9; power < resolution; ++power)
            nanoseconds /= 10;
    }
    // Times that do not fit wrap around instead of being undefined.
    return std::chrono::nanoseconds(
        static_cast<std::int64_t>(nanoseconds + static_cast<std::uint64_t>(offset) * perSecond));
}

} // namespace

std::uint16_t PcapngReader::half(std::size_t place) const {
    const auto first = block_[place];
    const auto second = block_[place + 1];
    return static_cast<std::uint16_t>(isBig_ ? first << 8 | second : second << 8 | first);
}

std::uint32_t PcapngReader::word(std::size_t place) const { return load32(block_.data() + place, isBig_); }

bool PcapngReader::read(std::uint8_t* to, std::size_t count) {
    in_.read(reinterpret_cast<char*>(to), static_cast<std::streamsize>(count));
    return static_cast<std::size_t>(in_.gcount()) == count;
}

std::optional<std::uint32_t> PcapngReader::readBlock() {
    constexpr std::size_t chunk = std::size_t{1} << 16;
    std::array<std::uint8_t, 12> head{};
    if (!read(head.data(), 8)) {
        if (!hasSection_)
            throw FormatError("it is no pcapng file");
        isCut_ = in_.gcount() > 0;
        return std::nullopt;
    }
    std::size_t had = 0;
    const bool isSection = load32(head.data(), true) == pcapng::sectionHeader; // the same both ways
    if (isSection) {
        if (!read(head.data() + 8, 4)) {
            isCut_ = true;
            return std::nullopt;
        }
        had = 4;
        isBig_ = load32(head.data() + 8, true) == pcapng::byteOrderMagic;
        if (!isBig_ && load32(head.data() + 8, false) != pcapng::byteOrderMagic)
            throw FormatError("it is no pcapng file");
        hasSection_ = true;
        interfaces_.clear();
    } else if (!hasSection_) {
        const auto magic = load32(head.data(), true);
        const bool isPcap =
            magic == 0xA1B2C3D4 || magic == 0xD4C3B2A1 || magic == 0xA1B23C4D || magic == 0x4D3CB2A1;
        throw FormatError(isPcap ? "it is a pcap file, no pcapng file: 'editcap -F pcapng' converts it"
                                 : "it is no pcapng file");
    }
    const auto type = load32(head.data(), isBig_);
    const auto length = load32(head.data() + 4, isBig_);
    if (length < blockFrame + had || length % 4 != 0 || length > largestBlock)
        throw FormatError("it has a block of " + std::to_string(length) + " bytes");
    block_.assign(head.begin() + 8, head.begin() + 8 + static_cast<std::ptrdiff_t>(had));
    // Memory is taken for what is there, not for what is announced.
    const std::size_t whole = length - 8; // with the second length
    while (block_.size() < whole) {
        const auto begin = block_.size();
        block_.resize(std::min(whole, begin + chunk));
        if (!read(block_.data() + begin, block_.size() - begin)) {
            isCut_ = true;
            return std::nullopt;
        }
    }
    block_.resize(whole - 4);
    return type;
}

void PcapngReader::describeInterface() {
    if (block_.size() < 8 || interfaces_.size() >= mostInterfaces)
        throw FormatError("it has a wrong description of an interface");
    Interface described;
    described.linkType = half(0);
    for (std::size_t place = 8; place + 4 <= block_.size();) {
        const auto code = half(place);
        const std::size_t length = half(place + 2);
        place += 4;
        if (code == pcapng::endOfOptions || place + length > block_.size())
            break;
        if (code == pcapng::timeResolution && length == 1)
            described.resolution = block_[place];
        if (code == pcapng::timeOffset && length == 8) {
            const std::uint64_t first = word(place);
            const std::uint64_t second = word(place + 4);
            described.offset =
                static_cast<std::int64_t>(isBig_ ? first << 32 | second : second << 32 | first);
        }
        place += (length + 3) / 4 * 4;
    }
    interfaces_.push_back(described);
}

Packet PcapngReader::packet(std::size_t interface, std::uint64_t ticks, std::size_t begin,
                            std::uint32_t length) const {
    if (interface >= interfaces_.size())
        throw FormatError("it has a packet of an interface that it does not describe");
    if (length > block_.size() - begin)
        throw FormatError("it has a packet that is longer than its block");
    const auto& from = interfaces_[interface];
    return {from.linkType, timeOf(ticks, from.resolution, from.offset),
            std::span(block_).subspan(begin, length)};
}

std::optional<Packet> PcapngReader::next() {
    constexpr std::size_t enhancedHead = 20;
    constexpr std::size_t simpleHead = 4;
    while (const auto type = readBlock()) {
        if (*type == pcapng::interfaceDescription)
            describeInterface();
        if (*type == pcapng::enhancedPacket) {
            if (block_.size() < enhancedHead)
                throw FormatError("it has a packet that is too short");
            return packet(word(0), static_cast<std::uint64_t>(word(4)) << 32 | word(8), enhancedHead,
                          word(12));
        }
        if (*type == pcapng::simplePacket) {
            if (block_.size() < simpleHead)
                throw FormatError("it has a packet that is too short");
            const auto there = static_cast<std::uint32_t>(block_.size() - simpleHead);
            return packet(0, 0, simpleHead, std::min(word(0), there));
        }
    }
    return std::nullopt;
}

} // namespace TAVO::trace
