#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <vector>

#include <tavo/cli/rom_serve/spi_flash.h>

namespace TAVO::cli {

/// A part of the ROM's memory.
struct RomPart {
    std::uint32_t offset;
    std::uint32_t length;
};

/// A part with its content.
struct RomPiece {
    std::uint32_t offset;
    std::vector<std::uint8_t> bytes;
};

/// What an image asks of its device. Both yield as many bytes as were asked for, or throw.
struct RomAccess {
    using Contents = std::vector<std::vector<std::uint8_t>>;

    /// Reads the parts, in one exchange.
    std::function<Contents(const std::vector<RomPart>&)> read;
    /// Writes the pieces and reads them back, in one exchange.
    std::function<Contents(const std::vector<RomPiece>&)> rewrite;
};

/// The beginning of a ROM's memory as cells of a flash, kept on this side: it is read when it is needed, and
/// what changes is written by flush(). Every function that needs the device throws what that does.
class RomImage final : public FlashCells {
public:
    /// @param access must outlive the image.
    RomImage(std::uint32_t size, const RomAccess& access);

    void read(std::uint32_t place, std::span<std::uint8_t> bytes) override;
    void program(std::uint32_t place, std::span<const std::uint8_t> bytes) override;
    void erase(std::uint32_t place, std::uint32_t length) override;

    /// Writes what has changed, and compares it with what the device then has.
    /// @throws Failure (refused) that names the first difference.
    void flush();
    /// Reads what has not changed anew when it is needed next.
    void forget();

    /// The work that changed blocks is done.
    void accept();
    /// The work that changed blocks broke off: there is doubt about each until it has been read whole.
    void doubt();
    bool isDoubtful() const;

    /// How many bytes flush() would write.
    std::uint32_t unwritten() const { return dirtyBlocks_ * blockSize; }
    /// How many bytes were written and compared.
    std::uint64_t written() const { return written_; }

    static constexpr std::uint32_t blockSize = 4096;
    /// What one exchange reads, or writes, at most.
    static constexpr std::uint32_t exchangeSize = 2 * 1024 * 1024;
    static constexpr std::uint32_t callSize = 1024 * 1024;
    static constexpr std::size_t piecesPerExchange = 128;

private:
    enum class Block : std::uint8_t { unknown, same, changed };
    enum class Trust : std::uint8_t { sound, atWork, doubtful };

    /// Calls the action with the number of each block in which there are such bytes.
    template <class Action>
    static void forBlocks(std::uint32_t place, std::size_t length, Action action);
    /// Makes the block known, and its neighbours.
    void require(std::size_t block);
    void markChanged(std::size_t block);
    std::span<std::uint8_t> bytesOf(std::size_t block);
    std::vector<RomPiece> nextChanges() const;

    const RomAccess& access_;
    std::vector<std::uint8_t> bytes_;
    std::vector<Block> blocks_;
    std::vector<Trust> trust_;
    /// Known to be erased, so that a chip that is erased again and again costs nothing.
    std::vector<bool> isBlank_;
    std::uint32_t dirtyBlocks_ = 0;
    std::uint64_t written_ = 0;
};

} // namespace TAVO::cli
