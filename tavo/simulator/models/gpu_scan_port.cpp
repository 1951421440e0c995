#include <tavo/simulator/models/gpu_scan_port.h>

namespace TAVO::simulator {

std::optional<std::vector<std::uint8_t>> GpuScanPort::scan(std::int32_t bits) {
    if (bits < 0 || bits > mostBits)
        return std::nullopt;
    std::vector<std::uint8_t> bytes((static_cast<std::size_t>(bits) + 7) / 8);
    for (std::size_t bit = 0; bit < static_cast<std::size_t>(bits); ++bit) {
        bytes[bit / 8] |= static_cast<std::uint8_t>(unsigned{sdo()} << bit % 8);
        advance();
    }
    return bytes;
}

void GpuScanPort::setSck(Drive drive, bool listening) {
    const bool before = sck_.driven && sck_.level;
    sck_ = drive;
    if (listening && !before && sck_.driven && sck_.level)
        advance();
}

bool GpuScanPort::setFrequency(std::int32_t frequency) {
    if (frequency < slowest || frequency > fastest)
        return false;
    const auto wanted = static_cast<std::uint32_t>(frequency);
    divider_ = (baseFrequency + wanted - 1) / wanted;
    return true;
}

void GpuScanPort::setPattern(std::uint64_t pattern) {
    pattern_ = pattern;
    position_ = 0;
}

} // namespace TAVO::simulator
