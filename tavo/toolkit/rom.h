#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include <tavo/client.h>
#include <tavo/toolkit/access.h>

namespace TAVO::toolkit {

/// Is told how far a phase has come, in bytes: at its begin, when `done` is 0, and after each exchange.
/// @param phase "writing", "verifying" or "reading".
using Progress = std::function<void(std::string_view phase, std::uint64_t done, std::uint64_t total)>;

/// The memory of one ROM emulation, transferred in few exchanges. A stop ends the transfer between exchanges.
class RomMemory {
public:
    using Bytes = std::vector<std::uint8_t>;

    /// Asks the device for the size. One exchange.
    RomMemory(Access& access, std::shared_ptr<const HWDebug::LpcRomEmulation_v1_0> rom);

    const HWDebug::LpcRomEmulation_v1_0& rom() const { return *rom_; }
    std::uint32_t size() const { return size_; }

    /// @throws BadRequest unless the part is within the memory.
    void require(std::uint64_t offset, std::uint64_t length) const;
    /// @param[out] written how many bytes the device has taken, also if this throws.
    void write(std::uint32_t offset, std::span<const std::uint8_t> data, std::uint32_t& written,
               const Progress& progress);
    /// Passes each chunk to `take`, with its position after `offset`.
    /// @throws Fault if the device gives another number of bytes; what `take` throws.
    void read(std::string_view phase, std::uint32_t offset, std::uint32_t length,
              const std::function<void(std::uint32_t, const Bytes&)>& take, const Progress& progress);
    /// @param name what the message calls the image.
    /// @throws Difference if the memory has something else.
    void compare(std::uint32_t offset, std::span<const std::uint8_t> image, const std::string& name,
                 const Progress& progress);

private:
    /// A part of the memory.
    struct Part {
        std::uint32_t offset;
        std::uint32_t length;
    };
    void forExchanges(std::string_view phase, std::uint32_t length, const Progress& progress,
                      const std::function<void(const std::vector<Part>&)>& exchange);

    Access& access_;
    std::shared_ptr<const HWDebug::LpcRomEmulation_v1_0> rom_;
    std::uint32_t size_;
};

struct RomLoadOptions {
    std::uint32_t offset = 0;
    /// Whether to read the image back.
    bool verifies = true;
    /// Lets the board boot from it afterwards.
    bool enables = false;
    /// Does not disable an enabled ROM while its content changes.
    bool isLive = false;
};

/// Keeps a board from booting from half an image: the emulation is off from before the first write until all
/// is well.
class RomLoading {
public:
    /// Asks the device what there is, and changes nothing.
    /// @param image must outlive this. @param name what messages call it.
    /// @throws BadRequest if the image does not fit.
    RomLoading(Access& access, std::shared_ptr<const HWDebug::LpcRomEmulation_v1_0> rom,
               std::span<const std::uint8_t> image, std::string name, RomLoadOptions options);

    const RomMemory& memory() const { return memory_; }
    bool isEnabled() const { return enabled_; }
    std::uint32_t written() const { return written_; }

    /// @throws Difference; Fault; what the access throws. stateText() then tells what has been done.
    void run(const Progress& progress);

    /// How far it came, for when run() throws.
    std::string stateText() const;

private:
    void enable(bool enabled);

    Access& access_;
    std::span<const std::uint8_t> image_;
    std::string name_;
    RomLoadOptions options_;
    RomMemory memory_;
    bool wasEnabled_;
    bool enabled_;
    std::uint32_t written_ = 0;
};

} // namespace TAVO::toolkit
