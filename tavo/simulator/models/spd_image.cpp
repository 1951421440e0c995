#include <tavo/simulator/models/spd_image.h>

#include <algorithm>
#include <cstddef>
#include <initializer_list>
#include <span>
#include <string_view>

namespace TAVO::simulator {

namespace {

constexpr std::size_t imageSize = 256;
constexpr std::size_t checkedBytes = 117;
constexpr std::size_t checksumPosition = 126;

std::uint16_t crc16(std::span<const std::uint8_t> data) {
    unsigned crc = 0;
    for (const auto byte : data) {
        crc ^= static_cast<unsigned>(byte) << 8;
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc & 0x8000) != 0 ? (crc << 1) ^ 0x1021 : crc << 1;
    }
    return static_cast<std::uint16_t>(crc);
}

void put(std::vector<std::uint8_t>& image, std::size_t position, std::initializer_list<std::uint8_t> bytes) {
    std::copy(bytes.begin(), bytes.end(), image.begin() + static_cast<std::ptrdiff_t>(position));
}

} // namespace

std::vector<std::uint8_t> spdImage() {
    std::vector<std::uint8_t> image(imageSize, 0);
    // 176 bytes used of 256, checksum over 117; revision 1.1; DDR3; unbuffered.
    put(image, 0, {0x92, 0x11, 0x0B, 0x02});
    // 8 banks of 2 Gbit chips; 15 rows, 10 columns; 1.5 V; one rank, 8 bits wide; a bus of 64 bits.
    put(image, 4, {0x03, 0x19, 0x00, 0x01, 0x03});
    // Fine time base 1 ps, medium time base 1/8 ns.
    put(image, 9, {0x11, 0x01, 0x08});
    // Cycle 1.5 ns; CAS latencies 6 to 9; then in steps of 1/8 ns: tAA, tWR, tRCD, tRRD, tRP.
    put(image, 12, {0x0C, 0x00, 0x3C, 0x00, 0x69, 0x78, 0x69, 0x30, 0x69});
    // High nibbles of tRC and tRAS, tRAS 36 ns, tRC 49.125 ns, tRFC 160 ns, tWTR, tRTP 7.5 ns, tFAW 30 ns.
    put(image, 21, {0x11, 0x20, 0x89, 0x00, 0x05, 0x3C, 0x3C, 0x00, 0xF0});
    // Runs without DLL, RZQ/6 and RZQ/7; extended temperature range; no thermal sensor; standard chips.
    put(image, 30, {0x83, 0x01, 0x00, 0x00});
    // 30 mm high, up to 2 mm thick in front, raw card A, standard address mapping.
    put(image, 60, {0x0F, 0x01, 0x00, 0x00});
    // Place, year and week of manufacture, serial number.
    put(image, 119, {0x01, 0x24, 0x06, 0x00, 0x12, 0x34, 0x56});
    constexpr std::string_view partNumber = "SIM-2048-1333-U   ";
    std::copy(partNumber.begin(), partNumber.end(), image.begin() + 128);

    const auto checksum = crc16(std::span(image).first(checkedBytes));
    put(image, checksumPosition,
        {static_cast<std::uint8_t>(checksum & 0xFF), static_cast<std::uint8_t>(checksum >> 8)});
    return image;
}

} // namespace TAVO::simulator
