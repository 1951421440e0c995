#include <tavo/toolkit/rom.h>

#include <algorithm>
#include <utility>

#include <fmt/format.h>

#include <tavo/toolkit/errors.h>

namespace TAVO::toolkit {

namespace {

namespace lpcRomEmulation_v1_0 = TAVOXTranscode::lpcRomEmulation_v1_0;

constexpr std::uint32_t chunkSize = 1024 * 1024;
constexpr std::uint32_t chunksPerExchange = 2;

} // namespace

RomMemory::RomMemory(Access& access, std::shared_ptr<const HWDebug::LpcRomEmulation_v1_0> rom)
    : access_(access)
    , rom_(std::move(rom))
    , size_(static_cast<std::uint32_t>(
          std::max(0, access.value(*rom_, lpcRomEmulation_v1_0::sramSizeGet).size))) {}

void RomMemory::require(std::uint64_t offset, std::uint64_t length) const {
    if (offset + length > size_)
        throw BadRequest(
            fmt::format("{} bytes at offset {} do not fit in the ROM's {} bytes", length, offset, size_));
}

void RomMemory::forExchanges(std::string_view phase, std::uint32_t length, const Progress& progress,
                             const std::function<void(const std::vector<Part>&)>& exchange) {
    progress(phase, 0, length);
    for (std::uint32_t done = 0; done < length;) {
        access_.throwIfStopped();
        std::vector<Part> parts;
        while (parts.size() < chunksPerExchange && done < length) {
            parts.push_back({done, std::min(chunkSize, length - done)});
            done += parts.back().length;
        }
        exchange(parts);
        progress(phase, done, length);
    }
}

void RomMemory::write(std::uint32_t offset, std::span<const std::uint8_t> data, std::uint32_t& written,
                      const Progress& progress) {
    const auto length = static_cast<std::uint32_t>(data.size());
    forExchanges("writing", length, progress, [&](const std::vector<Part>& parts) {
        Methods calls;
        calls.reserve(parts.size());
        for (const auto& part : parts) {
            const auto chunk = data.subspan(part.offset, part.length);
            calls.push_back(rom_->getSramSetMethod(static_cast<int>(offset + part.offset),
                                                   Bytes(chunk.begin(), chunk.end())));
        }
        access_.runAll(calls);
        written = parts.back().offset + parts.back().length;
    });
}

void RomMemory::read(std::string_view phase, std::uint32_t offset, std::uint32_t length,
                     const std::function<void(std::uint32_t, const Bytes&)>& take, const Progress& progress) {
    forExchanges(phase, length, progress, [&](const std::vector<Part>& parts) {
        using Get = decltype(rom_->getSramGetMethod(0, 0));
        std::vector<Get> gets;
        gets.reserve(parts.size());
        for (const auto& part : parts)
            gets.push_back(rom_->getSramGetMethod(static_cast<int>(offset + part.offset),
                                                  static_cast<int>(part.length)));
        access_.run({gets.begin(), gets.end()});
        for (std::size_t i = 0; i < parts.size(); ++i) {
            const auto& get = gets[i];
            access_.insist(*get);
            const auto data = get->take().data;
            if (data.size() != parts[i].length)
                throw Fault(
                    fmt::format("the device gave {} bytes instead of {}", data.size(), parts[i].length));
            take(parts[i].offset, data);
        }
    });
}

void RomMemory::compare(std::uint32_t offset, std::span<const std::uint8_t> image, const std::string& name,
                        const Progress& progress) {
    const auto take = [&](std::uint32_t place, const Bytes& data) {
        const auto [found, wanted] =
            std::mismatch(data.begin(), data.end(), image.begin() + static_cast<std::ptrdiff_t>(place));
        if (found == data.end())
            return;
        const auto at = place + static_cast<std::uint32_t>(found - data.begin());
        throw Difference(fmt::format("first difference at offset 0x{:x}: the device has 0x{:02x}, '{}' has "
                                     "0x{:02x} at 0x{:x}",
                                     offset + at, *found, name, *wanted, at));
    };
    read("verifying", offset, static_cast<std::uint32_t>(image.size()), take, progress);
}

RomLoading::RomLoading(Access& access, std::shared_ptr<const HWDebug::LpcRomEmulation_v1_0> rom,
                       std::span<const std::uint8_t> image, std::string name, RomLoadOptions options)
    : access_(access)
    , image_(image)
    , name_(std::move(name))
    , options_(options)
    , memory_(access, std::move(rom))
    , wasEnabled_(access.value(memory_.rom(), lpcRomEmulation_v1_0::enableGet).enable)
    , enabled_(wasEnabled_) {
    memory_.require(options.offset, image.size());
}

void RomLoading::run(const Progress& progress) {
    if (!options_.isLive)
        enable(false);
    memory_.write(options_.offset, image_, written_, progress);
    if (options_.verifies)
        memory_.compare(options_.offset, image_, name_, progress);
    enable(wasEnabled_ || options_.enables);
}

std::string RomLoading::stateText() const {
    return fmt::format("at least {} of {} bytes were written; the ROM is {}", written_, image_.size(),
                       enabled_ ? "enabled" : "off");
}

void RomLoading::enable(bool enabled) {
    if (enabled != enabled_)
        access_.execute(memory_.rom(), lpcRomEmulation_v1_0::enableSet, enabled);
    enabled_ = enabled;
}

} // namespace TAVO::toolkit
