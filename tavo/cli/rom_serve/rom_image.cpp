#include <tavo/cli/rom_serve/rom_image.h>

#include <algorithm>

#include <fmt/format.h>

#include <tavo/cli/failure.h>

namespace TAVO::cli {

namespace {

constexpr std::uint8_t erasedByte = 0xFF;

void requireSame(const RomPiece& written, const std::vector<std::uint8_t>& found) {
    const auto [has, wanted] =
        std::mismatch(found.begin(), found.end(), written.bytes.begin(), written.bytes.end());
    if (wanted == written.bytes.end())
        return;
    const auto place = written.offset + static_cast<std::uint32_t>(wanted - written.bytes.begin());
    if (has == found.end())
        throw Failure(ExitCode::refused, fmt::format("the device has nothing at offset 0x{:x}", place));
    throw Failure(ExitCode::refused,
                  fmt::format("first difference at offset 0x{:x}: the device has 0x{:02x}, 0x{:02x} was "
                              "written",
                              place, *has, *wanted));
}

} // namespace

RomImage::RomImage(std::uint32_t size, const RomAccess& access)
    : access_(access)
    , bytes_(size)
    , blocks_(size / blockSize)
    , trust_(blocks_.size(), Trust::sound)
    , isBlank_(blocks_.size()) {}

template <class Action>
void RomImage::forBlocks(std::uint32_t place, std::size_t length, Action action) {
    for (std::size_t block = place / blockSize; block * blockSize < place + length; ++block)
        action(block);
}

void RomImage::read(std::uint32_t place, std::span<std::uint8_t> bytes) {
    forBlocks(place, bytes.size(), [&](std::size_t block) { require(block); });
    const auto content = std::span(bytes_).subspan(place, bytes.size());
    std::copy(content.begin(), content.end(), bytes.begin());
    for (std::size_t block = (place + blockSize - 1) / blockSize;
         (block + 1) * blockSize <= place + bytes.size(); ++block)
        if (trust_[block] == Trust::doubtful)
            trust_[block] = Trust::sound;
}

void RomImage::program(std::uint32_t place, std::span<const std::uint8_t> bytes) {
    forBlocks(place, bytes.size(), [&](std::size_t block) { require(block); });
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        auto& cell = bytes_[place + i];
        if ((cell & ~bytes[i]) == 0)
            continue;
        cell = static_cast<std::uint8_t>(cell & bytes[i]);
        isBlank_[(place + i) / blockSize] = false;
        markChanged((place + i) / blockSize);
    }
}

void RomImage::erase(std::uint32_t place, std::uint32_t length) {
    forBlocks(place, length, [&](std::size_t block) {
        if (isBlank_[block])
            return;
        isBlank_[block] = true;
        const auto bytes = bytesOf(block);
        const auto isErased = [](std::uint8_t byte) { return byte == erasedByte; };
        if (blocks_[block] != Block::unknown && std::all_of(bytes.begin(), bytes.end(), isErased))
            return;
        std::fill(bytes.begin(), bytes.end(), erasedByte);
        markChanged(block);
    });
}

void RomImage::require(std::size_t block) {
    if (blocks_[block] != Block::unknown)
        return;
    constexpr std::size_t blocksPerExchange = exchangeSize / blockSize;
    const auto first = block / blocksPerExchange * blocksPerExchange;
    const auto end = std::min(first + blocksPerExchange, blocks_.size());
    std::vector<RomPart> parts;
    for (auto place = first * blockSize; place < end * blockSize; place += callSize)
        parts.push_back({static_cast<std::uint32_t>(place), static_cast<std::uint32_t>(std::min<std::size_t>(
                                                                callSize, end * blockSize - place))});
    const auto contents = access_.read(parts);
    for (auto each = first; each < end; ++each) {
        if (blocks_[each] != Block::unknown)
            continue;
        const auto place = (each - first) * blockSize;
        const auto content = std::span(contents.at(place / callSize)).subspan(place % callSize, blockSize);
        std::copy(content.begin(), content.end(), bytesOf(each).begin());
        blocks_[each] = Block::same;
    }
}

void RomImage::markChanged(std::size_t block) {
    if (trust_[block] == Trust::sound)
        trust_[block] = Trust::atWork;
    if (blocks_[block] == Block::changed)
        return;
    blocks_[block] = Block::changed;
    ++dirtyBlocks_;
}

std::span<std::uint8_t> RomImage::bytesOf(std::size_t block) {
    return std::span(bytes_).subspan(block * blockSize, blockSize);
}

std::vector<RomPiece> RomImage::nextChanges() const {
    std::vector<RomPiece> pieces;
    std::size_t left = exchangeSize / blockSize;
    for (std::size_t block = 0; block < blocks_.size() && left > 0; ++block) {
        if (blocks_[block] != Block::changed)
            continue;
        const auto place = static_cast<std::uint32_t>(block * blockSize);
        const bool goesOn = !pieces.empty() && pieces.back().bytes.size() < callSize &&
                            pieces.back().offset + pieces.back().bytes.size() == place;
        if (!goesOn && pieces.size() == piecesPerExchange)
            break;
        if (!goesOn)
            pieces.push_back({place, {}});
        const auto first = bytes_.begin() + static_cast<std::ptrdiff_t>(place);
        pieces.back().bytes.insert(pieces.back().bytes.end(), first, first + blockSize);
        --left;
    }
    return pieces;
}

void RomImage::flush() {
    while (dirtyBlocks_ > 0) {
        const auto pieces = nextChanges();
        const auto found = access_.rewrite(pieces);
        for (std::size_t i = 0; i < pieces.size(); ++i) {
            requireSame(pieces[i], found.at(i));
            const auto length = pieces[i].bytes.size();
            forBlocks(pieces[i].offset, length, [&](std::size_t block) { blocks_[block] = Block::same; });
            dirtyBlocks_ -= static_cast<std::uint32_t>(length / blockSize);
            written_ += length;
        }
    }
}

void RomImage::forget() {
    for (std::size_t block = 0; block < blocks_.size(); ++block)
        if (blocks_[block] == Block::same) {
            blocks_[block] = Block::unknown;
            isBlank_[block] = false;
        }
}

void RomImage::accept() { std::replace(trust_.begin(), trust_.end(), Trust::atWork, Trust::sound); }

void RomImage::doubt() { std::replace(trust_.begin(), trust_.end(), Trust::atWork, Trust::doubtful); }

bool RomImage::isDoubtful() const {
    return std::find(trust_.begin(), trust_.end(), Trust::doubtful) != trust_.end();
}

} // namespace TAVO::cli
