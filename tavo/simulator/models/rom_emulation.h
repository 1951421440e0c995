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

/// The memory that serves a board's boot ROM: 8 MiB, all 0xFF at first.
class TAVO_SIMULATOR_API RomEmulation {
public:
    static constexpr std::size_t size = std::size_t{8} * 1024 * 1024;
    /// Kinds of ROM: behind the LPC bus, or a firmware hub.
    static constexpr std::uint8_t lpc = 0;
    static constexpr std::uint8_t firmwareHub = 1;

    explicit RomEmulation(std::shared_ptr<Board> board);

    /// Empty when the range does not lie inside the memory.
    std::optional<std::vector<std::uint8_t>> read(std::int64_t offset, std::int64_t length) const;
    /// Writes nothing, and returns false, when the data do not fit.
    bool write(std::int64_t offset, std::span<const std::uint8_t> data);

    std::uint8_t romType() const noexcept { return romType_; }
    /// False for an unknown kind.
    bool setRomType(std::uint8_t type);

    bool enabled() const noexcept { return enabled_; }
    void setEnabled(bool enabled);
    /// Erased, disabled, of the first kind.
    void reset();
    /// Whether a board that boots now runs the firmware in this memory.
    bool servesBoot() const;

private:
    std::shared_ptr<Board> board_;
    std::vector<std::uint8_t> written_;
    std::uint8_t romType_ = lpc;
    bool enabled_ = false;
};

} // namespace TAVO::simulator
