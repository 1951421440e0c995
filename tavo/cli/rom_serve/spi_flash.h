#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include <tavo/cli/rom_serve/flash_chip.h>

namespace TAVO::cli {

/// The cells of a flash. Places are within its size.
class FlashCells {
public:
    virtual ~FlashCells() = default;
    /// Puts the bytes from `place` on into `bytes`.
    virtual void read(std::uint32_t place, std::span<std::uint8_t> bytes) = 0;
    /// Clears the bits that are 0 in `bytes`.
    virtual void program(std::uint32_t place, std::span<const std::uint8_t> bytes) = 0;
    /// Sets all bits.
    virtual void erase(std::uint32_t place, std::uint32_t length) = 0;
};

/// An SPI flash. Every command is done at once, so it is never busy. It has no SFDP; a command that it does
/// not know reads as 0xFF and changes nothing.
class SpiFlash {
public:
    using Bytes = std::vector<std::uint8_t>;

    /// @param cells must outlive it.
    SpiFlash(const FlashChip& chip, FlashCells& cells);

    /// What happens while the chip is selected: `sent` is clocked in, then `length` bytes are clocked out.
    /// @return these. @throws what the cells throw.
    Bytes transfer(std::span<const std::uint8_t> sent, std::size_t length);

    /// Demands the commands that enable writing anew.
    void forbidWriting() { isWritable_ = isStatusWritable_ = false; }

    const FlashChip& chip() const { return chip_; }

    static constexpr std::uint32_t pageSize = 256;

private:
    using Sent = std::span<const std::uint8_t>;

    /// Does what takes no answer.
    void act(Sent sent);
    Bytes answer(Sent sent, std::size_t length);
    Bytes repeated(std::span<const std::uint8_t> pattern, std::size_t skipped, std::size_t length) const;
    Bytes content(std::uint32_t place, std::size_t length);
    std::uint32_t addressIn(Sent sent) const;
    void program(Sent sent);
    void erase(Sent sent, std::uint32_t length);
    void setStatus(Sent registers);
    bool isProtected() const;
    std::uint8_t status() const;

    const FlashChip chip_;
    FlashCells& cells_;
    std::uint8_t status_ = 0; ///< without the bits that tell of writing
    std::uint8_t secondStatus_ = 0;
    bool isWritable_ = false;
    bool isStatusWritable_ = false; ///< by the older command
};

} // namespace TAVO::cli
