#include <tavo/cli/rom_serve/spi_flash.h>

#include <algorithm>
#include <array>

namespace TAVO::cli {

namespace {

constexpr std::uint8_t silent = 0xFF;
constexpr std::size_t addressed = 4; ///< a command and its address

enum Opcode : std::uint8_t {
    writeStatus = 0x01,
    programPage = 0x02,
    readData = 0x03,
    disableWriting = 0x04,
    readStatus = 0x05,
    enableWriting = 0x06,
    readFast = 0x0B,
    readThirdStatus = 0x15,
    erase4K = 0x20,
    readSecondStatus = 0x35,
    enableWritingStatus = 0x50,
    erase32K = 0x52,
    eraseAll = 0x60,
    readManufacturer = 0x90,
    readIdentity = 0x9F,
    readSignature = 0xAB,
    eraseAllToo = 0xC7,
    erase64K = 0xD8,
};

constexpr std::uint8_t writableBit = 0x02;
/// The bits of the status that writing it leaves alone.
constexpr std::uint8_t activityBits = 0x03;
/// Those that protect cells.
constexpr std::uint8_t protectionBits = 0x3C;

} // namespace

SpiFlash::SpiFlash(const FlashChip& chip, FlashCells& cells)
    : chip_(chip)
    , cells_(cells) {}

SpiFlash::Bytes SpiFlash::transfer(std::span<const std::uint8_t> sent, std::size_t length) {
    if (sent.empty())
        return Bytes(length, silent);
    // Clocks behind a command that changes something make it void.
    if (length == 0)
        act(sent);
    return answer(sent, length);
}

void SpiFlash::act(Sent sent) {
    const bool isAlone = sent.size() == 1;
    switch (sent[0]) {
    case enableWriting:
        isWritable_ = isWritable_ || isAlone;
        break;
    case disableWriting:
        isWritable_ = isWritable_ && !isAlone;
        break;
    case enableWritingStatus:
        isStatusWritable_ = isStatusWritable_ || isAlone;
        break;
    case writeStatus:
        setStatus(sent.subspan(1));
        break;
    case programPage:
        program(sent);
        break;
    case erase4K:
        erase(sent, 0x1000);
        break;
    case erase32K:
        erase(sent, 0x8000);
        break;
    case erase64K:
        erase(sent, 0x10000);
        break;
    case eraseAll:
    case eraseAllToo:
        if (isAlone && isWritable_) {
            if (!isProtected())
                cells_.erase(0, chip_.size);
            isWritable_ = false;
        }
        break;
    default:
        break;
    }
}

SpiFlash::Bytes SpiFlash::answer(Sent sent, std::size_t length) {
    // The chip talks as soon as it has what it needs, whether or not it is listened to.
    const auto behind = [&](std::size_t head) { return sent.size() - head; };
    const auto repeat = [&](std::uint8_t value) { return Bytes(length, value); };
    switch (sent[0]) {
    case readIdentity:
        return repeated(chip_.identity, behind(1), length);
    case readStatus:
        return repeat(status());
    case readSecondStatus:
        return repeat(secondStatus_);
    case readThirdStatus:
        return repeat(0);
    case readManufacturer:
        if (sent.size() >= addressed) {
            const std::array both{chip_.identity[0], chip_.signature};
            return repeated(both, behind(addressed) + (addressIn(sent) & 1), length);
        }
        break;
    case readSignature:
        if (sent.size() >= addressed)
            return repeat(chip_.signature);
        break;
    case readData:
        if (sent.size() >= addressed)
            return content(addressIn(sent) + static_cast<std::uint32_t>(behind(addressed)), length);
        break;
    case readFast:
        if (sent.size() > addressed)
            return content(addressIn(sent) + static_cast<std::uint32_t>(behind(addressed + 1)), length);
        break;
    default:
        break;
    }
    return repeat(silent);
}

SpiFlash::Bytes SpiFlash::repeated(std::span<const std::uint8_t> pattern, std::size_t skipped,
                                   std::size_t length) const {
    Bytes bytes(length);
    for (std::size_t i = 0; i < length; ++i)
        bytes[i] = pattern[(skipped + i) % pattern.size()];
    return bytes;
}

SpiFlash::Bytes SpiFlash::content(std::uint32_t place, std::size_t length) {
    Bytes bytes(length);
    place %= chip_.size;
    for (std::size_t done = 0; done < length;) {
        const auto part = std::min<std::size_t>(length - done, chip_.size - place);
        cells_.read(place, std::span(bytes).subspan(done, part));
        done += part;
        place = 0;
    }
    return bytes;
}

/// The higher bits of an address are not looked at.
std::uint32_t SpiFlash::addressIn(Sent sent) const {
    return (std::uint32_t{sent[1]} << 16 | std::uint32_t{sent[2]} << 8 | sent[3]) % chip_.size;
}

void SpiFlash::program(Sent sent) {
    if (sent.size() <= addressed || !isWritable_)
        return;
    isWritable_ = false;
    if (isProtected())
        return;
    const auto place = addressIn(sent);
    const auto first = place % pageSize;
    // The chip collects a page, of which the end is followed by the beginning.
    std::array<std::uint8_t, pageSize> page{};
    page.fill(0xFF);
    const auto data = sent.subspan(addressed);
    for (std::size_t i = 0; i < data.size(); ++i)
        page[(first + i) % pageSize] = data[i];
    if (first + data.size() <= pageSize)
        cells_.program(place, std::span(page).subspan(first, data.size()));
    else
        cells_.program(place - first, page);
}

void SpiFlash::erase(Sent sent, std::uint32_t length) {
    if (sent.size() != addressed || !isWritable_)
        return;
    isWritable_ = false;
    if (!isProtected())
        cells_.erase(addressIn(sent) / length * length, length);
}

void SpiFlash::setStatus(Sent registers) {
    if (registers.empty() || registers.size() > 3 || !(isWritable_ || isStatusWritable_))
        return;
    isWritable_ = isStatusWritable_ = false;
    status_ = static_cast<std::uint8_t>(registers[0] & ~activityBits);
    if (registers.size() > 1)
        secondStatus_ = registers[1];
}

bool SpiFlash::isProtected() const { return (status_ & protectionBits) != 0; }

std::uint8_t SpiFlash::status() const {
    return static_cast<std::uint8_t>(status_ | (isWritable_ ? writableBit : 0));
}

} // namespace TAVO::cli
