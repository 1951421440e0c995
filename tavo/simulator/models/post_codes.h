#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <vector>

#include <tavo/simulator/export.h>
#include <tavo/simulator/models/board.h>

namespace TAVO::simulator {

/// Captures the POST codes that the board's firmware writes during boot.
class TAVO_SIMULATOR_API PostCodes : public BoardObserver {
public:
    struct Entry {
        std::uint8_t code = 0;
        std::uint8_t port = 0;
        bool firstAfterPowerOn = false;
        /// Microseconds since power-on.
        std::uint64_t time = 0;
        bool operator==(const Entry&) const = default;
    };

    struct Options {
        /// Low eight bits of the captured port. The firmware writes to port 0x80.
        std::uint8_t port = 0x80;
        bool passive = false;
        /// A full FIFO drops the oldest entry; otherwise the new one.
        bool circular = false;
        /// Do not store a code equal to the one before it.
        bool discardRepeated = false;
        /// Power-on empties the FIFO.
        bool resetAtPowerOn = false;
        bool operator==(const Options&) const = default;
    };

    /// The last code of every boot.
    static constexpr std::uint8_t bootEnd = 0xAA;
    /// The first code of firmware that runs from the emulated ROM.
    static constexpr std::uint8_t emulatedRom = 0xB0;
    /// Written by a boot that found its settings cleared.
    static constexpr std::uint8_t cmosCleared = 0x0C;

    /// @param fromEmulatedRom whether a boot starting now runs from an emulated ROM; empty for never.
    PostCodes(std::shared_ptr<Board> board, std::function<bool()> fromEmulatedRom,
              std::size_t capacity = 1024);

    /// The last code captured since power-on; -1 if there is none.
    int last();
    std::size_t capacity() const noexcept { return capacity_; }
    /// Oldest first. Does not remove them.
    std::vector<Entry> entries();
    void clear();
    /// Takes a code that the board writes now, besides those of its boot. Does nothing without power.
    void write(std::uint8_t code);
    /// Whether an entry has been lost since the last clearOverflow().
    bool overflow();
    void clearOverflow();

    bool enabled() const noexcept { return enabled_; }
    void setEnabled(bool enabled);
    const Options& options() const noexcept { return options_; }
    void setOptions(const Options& options);

protected:
    void settle(std::uint64_t time) override;
    void boardChanged() override;

private:
    struct Step {
        std::uint64_t sinceBoot;
        std::uint8_t code;
    };

    void catchUp();
    void capture(std::uint8_t code, std::uint64_t sincePowerOn);
    void store(const Entry& entry);
    static std::vector<Step> bootSteps(bool fromEmulatedRom, bool cmosWasCleared);

    std::function<bool()> fromEmulatedRom_;
    std::size_t capacity_;
    std::deque<Entry> fifo_;
    Options options_;
    bool enabled_ = true;
    bool overflow_ = false;
    int last_ = -1;
    int lastStored_ = -1;
    bool firstIsDue_ = false;

    std::vector<Step> steps_;
    std::size_t nextStep_ = 0;
    std::uint64_t bootTime_ = 0;
    std::uint64_t powerOnTime_ = 0;
    std::uint32_t powerOns_ = 0;
};

} // namespace TAVO::simulator
