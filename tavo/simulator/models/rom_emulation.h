#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include <tavo/simulator/export.h>
#include <tavo/simulator/models/board.h>

namespace TAVO::simulator {

/// Memory that stands in for a board's boot ROM, initially all 0xFF.
class TAVO_SIMULATOR_API RomEmulation {
public:
    /// Bytes of a memory, unless it is made with another number.
    static constexpr std::size_t size = std::size_t{8} * 1024 * 1024;
    /// The most bytes it can be made with.
    static constexpr std::size_t largestSize = std::size_t{256} * 1024 * 1024;
    /// Kinds of ROM: on the LPC bus, or a firmware hub.
    static constexpr std::uint8_t lpc = 0;
    static constexpr std::uint8_t firmwareHub = 1;

    explicit RomEmulation(std::shared_ptr<Board> board);
    /// @throws std::invalid_argument unless it has 1 to `largestSize` bytes.
    RomEmulation(std::shared_ptr<Board> board, std::size_t capacity);

    /// Bytes of this memory.
    std::size_t capacity() const noexcept { return capacity_; }
    /// Returns empty if the range is not within the memory.
    std::optional<std::vector<std::uint8_t>> read(std::int64_t offset, std::int64_t length) const;
    /// Returns false and writes nothing if the data does not fit.
    bool write(std::int64_t offset, std::span<const std::uint8_t> data);

    std::uint8_t romType() const noexcept { return romType_; }
    /// Returns false for an unknown kind.
    bool setRomType(std::uint8_t type);

    bool enabled() const noexcept { return enabled_; }
    void setEnabled(bool enabled);
    /// Erases and disables it and selects the first kind.
    void reset();
    /// Whether a board that boots now runs firmware from this memory.
    bool servesBoot() const;

private:
    bool liesInside(std::int64_t offset, std::int64_t length) const noexcept;

    std::shared_ptr<Board> board_;
    std::size_t capacity_;
    std::vector<std::uint8_t> written_;
    std::uint8_t romType_ = lpc;
    bool enabled_ = false;
};

} // namespace TAVO::simulator
