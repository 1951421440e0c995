#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include <tavo/cli/rom_serve/spi_flash.h>

namespace tool_test {

using FlashBytes = std::vector<std::uint8_t>;

inline bool isAll(const FlashBytes& bytes, std::uint8_t value) {
    return std::all_of(bytes.begin(), bytes.end(), [&](std::uint8_t byte) { return byte == value; });
}

/// Cells that nothing stands behind.
struct PlainCells final : TAVO::cli::FlashCells {
    explicit PlainCells(std::size_t size)
        : bytes(size, 0xFF) {}

    void read(std::uint32_t place, std::span<std::uint8_t> to) override {
        const auto from = std::span(bytes).subspan(place, to.size());
        std::copy(from.begin(), from.end(), to.begin());
    }
    void program(std::uint32_t place, std::span<const std::uint8_t> with) override {
        const auto cells = std::span(bytes).subspan(place, with.size());
        for (std::size_t i = 0; i < with.size(); ++i)
            cells[i] = static_cast<std::uint8_t>(cells[i] & with[i]);
    }
    void erase(std::uint32_t place, std::uint32_t length) override {
        const auto cells = std::span(bytes).subspan(place, length);
        std::fill(cells.begin(), cells.end(), std::uint8_t{0xFF});
    }

    FlashBytes bytes;
};

inline FlashBytes operator+(FlashBytes front, const FlashBytes& back) {
    front.insert(front.end(), back.begin(), back.end());
    return front;
}

/// An opcode with an address.
inline FlashBytes at(std::uint8_t opcode, std::uint32_t address, const FlashBytes& more = {}) {
    return FlashBytes{opcode, static_cast<std::uint8_t>(address >> 16),
                      static_cast<std::uint8_t>(address >> 8), static_cast<std::uint8_t>(address)} +
           more;
}

/// A length, as serprog writes it.
inline FlashBytes serprog24(std::size_t number) {
    return {static_cast<std::uint8_t>(number), static_cast<std::uint8_t>(number >> 8),
            static_cast<std::uint8_t>(number >> 16)};
}

/// An SPI operation of serprog.
inline FlashBytes spi(const FlashBytes& sent, std::size_t length = 0) {
    return FlashBytes{0x13} + serprog24(sent.size()) + serprog24(length) + sent;
}

} // namespace tool_test
