#include <algorithm>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include <tavo/cli/rom_serve/rom_image.h>
#include <tavo/cli/rom_serve/serprog.h>
#include <tavo/cli/rom_serve/spi_flash.h>
#include <tests/cli/rom_serve/flash_model.h>
#include <tests/fuzz/fuzz_input.h>

// Clients of `tavo rom serve`. Input: the size of pieces, then what the client sends. It gets the same
// answers whole and in pieces with pauses, from plain cells and from an image in front of a device, which has
// the same content in the end.

namespace {

using fuzz::Bytes;
using fuzz::require;
using namespace TAVO::cli;
using Milliseconds = Conversation::Milliseconds;

const FlashChip chip{"small", 64 * 1024, {0xC2, 0x25, 0x30}, 0x30};

/// A client and the flash that it works with.
class Served {
public:
    Served(FlashCells& cells, FlashAccess access)
        : flash_(chip, cells)
        , access_(std::move(access)) {
        access_.transfer = [this](std::span<const std::uint8_t> sent, std::size_t length) {
            require(sent.size() <= Serprog::longestTaken && length <= Serprog::longestRead,
                    "an operation keeps to its sizes");
            return std::optional(flash_.transfer(sent, length));
        };
    }

    void receive(std::span<const std::uint8_t> bytes) {
        require(conversation_.receive(bytes), "a client is never sent away");
    }
    void pause(Milliseconds silence) {
        const auto next = conversation_.pause(silence);
        require(!next || (*next > silence && *next <= Serprog::longestPatience), "a pause ends");
    }
    void end() { conversation_.end(); }
    const Bytes& answers() const { return answers_; }

private:
    SpiFlash flash_;
    FlashAccess access_;
    Bytes answers_;
    Serprog conversation_{access_, [this](std::span<const std::uint8_t> bytes) {
                              require(!bytes.empty() && bytes.size() < 3 * Serprog::longestRead,
                                      "answers are sent in parts");
                              answers_.insert(answers_.end(), bytes.begin(), bytes.end());
                          }};
};

/// The memory of a device.
struct Memory {
    RomAccess::Contents read(const std::vector<RomPart>& parts) const {
        RomAccess::Contents contents;
        for (const auto& part : parts)
            contents.emplace_back(bytes.begin() + part.offset, bytes.begin() + part.offset + part.length);
        return contents;
    }
    RomAccess::Contents rewrite(const std::vector<RomPiece>& pieces) {
        RomAccess::Contents contents;
        for (const auto& piece : pieces) {
            std::copy(piece.bytes.begin(), piece.bytes.end(), bytes.begin() + piece.offset);
            contents.push_back(piece.bytes);
        }
        return contents;
    }

    Bytes bytes;
};

Bytes someContent() {
    Bytes bytes(chip.size);
    for (std::size_t i = 0; i < bytes.size(); ++i)
        bytes[i] = static_cast<std::uint8_t>(i % 251);
    return bytes;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t length) {
    static const auto before = someContent();
    fuzz::Input input(bytes, length);
    const std::size_t piece = input.byte() + 1u;
    const auto all = input.rest();

    tool_test::PlainCells cells(chip.size);
    cells.bytes = before;
    Served whole(cells, {{}, [] { return true; }, [] { return true; }, [] {}});
    whole.receive(all);
    whole.end();

    Memory memory{before};
    const RomAccess access{[&](const auto& parts) { return memory.read(parts); },
                           [&](const auto& pieces) { return memory.rewrite(pieces); }};
    RomImage image(chip.size, access);
    const auto flush = [&] {
        const bool isThere = image.unwritten() > 0;
        image.flush();
        require(image.unwritten() == 0, "everything is written");
        return isThere;
    };
    Served cut(image, {{}, flush, [&] { return flush(), true; }, [&] { flush(); }});
    for (std::size_t sent = 0; sent < all.size(); sent += piece) {
        cut.receive(all.subspan(sent, std::min(piece, all.size() - sent)));
        cut.pause(Milliseconds(0));
        cut.pause(Milliseconds(sent % 3 * 1000));
    }
    cut.end();

    require(cut.answers() == whole.answers(), "pieces are answered as the whole");
    require(memory.bytes == cells.bytes, "the device has what was written");
    require(memory.bytes == before || std::find(all.begin(), all.end(), 0x06) != all.end(),
            "nothing changes unless it is enabled");
    return 0;
}
