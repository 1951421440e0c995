#include <tavo/cli/commands/rom.h>

#include <algorithm>
#include <memory>
#include <utility>
#include <vector>

#include <fmt/format.h>

#include <tavo/cli/door/device_guard.h>
#include <tavo/cli/door/door.h>
#include <tavo/cli/door/told_place.h>
#include <tavo/cli/object_choice.h>
#include <tavo/cli/rom_serve/flash_chip.h>
#include <tavo/cli/rom_serve/rom_image.h>
#include <tavo/cli/rom_serve/serprog.h>
#include <tavo/cli/rom_serve/spi_flash.h>

namespace TAVO::cli {

namespace {

using HWDebug::LpcRomEmulation_v1_0;
namespace lpcRomEmulation_v1_0 = TAVOXTranscode::lpcRomEmulation_v1_0;

/// The memory of a ROM emulation.
class RomOfDevice {
public:
    RomOfDevice(Session& session, const std::string& object)
        : session_(session)
        , rom_(chooseObject<LpcRomEmulation_v1_0>(session, object, "ROM emulation"))
        , size_(static_cast<std::uint32_t>(
              std::max(0, session.value(*rom_, lpcRomEmulation_v1_0::sramSizeGet).size)))
        , isEnabled_(session.value(*rom_, lpcRomEmulation_v1_0::enableGet).enable) {}

    std::uint32_t size() const { return size_; }
    /// As this program knows; empty if the device did not answer when it was to change that.
    std::optional<bool> isEnabled() const { return isEnabled_; }

    /// Tells the device in any case: others may share it.
    void enable(bool enabled) {
        isEnabled_.reset();
        session_.execute(*rom_, lpcRomEmulation_v1_0::enableSet, enabled);
        isEnabled_ = enabled;
    }

    RomAccess access() {
        return {[this](const std::vector<RomPart>& parts) { return run({}, parts); },
                [this](const std::vector<RomPiece>& pieces) {
                    std::vector<RomPart> parts;
                    parts.reserve(pieces.size());
                    for (const auto& piece : pieces)
                        parts.push_back({piece.offset, static_cast<std::uint32_t>(piece.bytes.size())});
                    return run(pieces, parts);
                }};
    }

private:
    RomAccess::Contents run(const std::vector<RomPiece>& pieces, const std::vector<RomPart>& parts) {
        std::vector<std::shared_ptr<Method>> calls;
        calls.reserve(pieces.size() + parts.size());
        for (const auto& piece : pieces)
            calls.push_back(rom_->getSramSetMethod(static_cast<int>(piece.offset), piece.bytes));
        using Get = decltype(rom_->getSramGetMethod(0, 0));
        std::vector<Get> gets;
        gets.reserve(parts.size());
        for (const auto& part : parts) {
            gets.push_back(
                rom_->getSramGetMethod(static_cast<int>(part.offset), static_cast<int>(part.length)));
            calls.push_back(gets.back());
        }
        session_.runAll(calls);
        RomAccess::Contents contents;
        for (std::size_t i = 0; i < parts.size(); ++i) {
            contents.push_back(gets[i]->take().data);
            if (contents.back().size() != parts[i].length)
                throw Failure(ExitCode::refused, fmt::format("the device gave {} bytes instead of {}",
                                                             contents.back().size(), parts[i].length));
        }
        return contents;
    }

    Session& session_;
    std::shared_ptr<LpcRomEmulation_v1_0> rom_;
    std::uint32_t size_;
    std::optional<bool> isEnabled_;
};

/// The ROM as a flash chip, as far as the device works. Keeps a board from booting from half an image: the
/// emulation is off from before the first write until the client that writes has let the chip go.
class ServedRom {
public:
    ServedRom(RomOfDevice& rom, Output& output, const FlashChip& chip, bool enable)
        : rom_(rom)
        , output_(output)
        , isToBeEnabled_(rom.isEnabled() == true || enable)
        , access_(rom.access())
        , image_(chip.size, access_)
        , flash_(chip, image_)
        , guard_([&output](const std::exception& failure) {
            output.warn(fmt::format("every operation is refused from now on: {}", failure.what()));
        }) {}

    FlashAccess access() {
        return {[this](std::span<const std::uint8_t> sent, std::size_t length) {
                    InterruptWatch::throwIfInterrupted();
                    std::optional<FlashAccess::Bytes> received;
                    guard_.attempt([&] { received = flash_.transfer(sent, length); });
                    return received;
                },
                [this] {
                    const bool isThere = image_.unwritten() > 0;
                    return guard_.attempt([this] { settle(); }) && isThere;
                },
                [this] { return guard_.attempt([this] { release(); }); }, [this] { leave(); }};
    }

    /// For a client that comes.
    void begin() {
        image_.forget();
        flash_.forbidWriting();
        before_ = image_.written();
    }
    void throwIfFailed() const {
        if (guard_.hasFailed() && isUnfinished())
            output_.warn(stateText());
        guard_.throwIfFailed();
    }

    /// Whether a client wrote and did not come to its end.
    bool isUnfinished() const { return isChanged_ || image_.unwritten() > 0; }
    /// How far it came.
    std::string stateText() const {
        const auto written = image_.written() - before_;
        const auto isEnabled = rom_.isEnabled();
        return fmt::format("at least {} of {} changed bytes were written; the ROM is {}", written,
                           written + image_.unwritten(),
                           !isEnabled   ? "not known to be off"
                           : *isEnabled ? "enabled"
                                        : "off");
    }

private:
    void settle() {
        if (image_.unwritten() == 0)
            return;
        if (!std::exchange(isChanged_, true))
            rom_.enable(false);
        image_.flush();
    }

    void release() {
        settle();
        const bool isDoubtful = image_.isDoubtful();
        if (isToBeEnabled_ && isDoubtful)
            output_.warn("the ROM stays off: a client went in the middle of its work, and no other has read "
                         "all that it changed");
        else if (isToBeEnabled_ && (isChanged_ || rom_.isEnabled() != true))
            rom_.enable(true);
        image_.accept();
        isChanged_ = false;
    }

    void leave() {
        guard_.attempt([this] { settle(); });
        if (!isChanged_ || guard_.hasFailed())
            return;
        output_.warn(fmt::format("the client went before it let the chip go: {}", stateText()));
        image_.doubt();
        isChanged_ = false;
    }

    RomOfDevice& rom_;
    Output& output_;
    const bool isToBeEnabled_;
    const RomAccess access_;
    RomImage image_;
    SpiFlash flash_;
    DeviceGuard guard_;
    bool isChanged_ = false;   ///< by a client that has not let the chip go
    std::uint64_t before_ = 0; ///< written for other clients
};

void serveClients(ServedRom& rom, Door& door, bool once) {
    const auto access = rom.access();
    const auto greet = [&](Conversation::Send send) {
        rom.begin();
        return std::make_unique<Serprog>(access, std::move(send));
    };
    while (true) {
        door.serve(greet);
        rom.throwIfFailed();
        if (once)
            return;
    }
}

} // namespace

void RomServeOptions::describe(OptionList& list) {
    list.add("address", address, "Where to listen; port 0 takes a free one",
             {.required = true, .valueName = "[ADDRESS:]PORT"});
    list.add("--chip", chip, "The chip to be taken for; default: the usual one of the memory's size",
             {.choices = flashChipNames(), .valueName = "NAME"});
    list.add("--enable", enable, "Let the board boot from it when a client has let the chip go");
    list.add("--once", once, "End when the first client has gone");
}

void serveRom(Session& session, Output& output, const RomServeOptions& options) {
    const auto address = parseListenAddress(options.address);
    RomOfDevice device(session, options.object);
    ServedRom rom(device, output, chooseFlashChip(device.size(), options.chip), options.enable);
    Door door(address, {});
    tellIfAnybodyReads(output, door.place());
    try {
        serveClients(rom, door, options.once);
    } catch (const Interrupted&) {
        if (rom.isUnfinished()) {
            output.warn(rom.stateText());
            throw;
        }
        InterruptWatch::forget();
        rom.throwIfFailed();
    }
}

} // namespace TAVO::cli
