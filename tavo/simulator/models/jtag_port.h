#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <utility>
#include <vector>

#include <tavo/simulator/export.h>
#include <tavo/simulator/models/board.h>
#include <tavo/simulator/models/jtag_chain.h>
#include <tavo/simulator/models/tap_observer.h>

namespace TAVO::simulator {

/// The appliance's end of a JTAG connector: shifts, state moves and single pins, all on the same chain.
///
/// Bit strings have bit i in bit i%8 of byte i/8; bit 0 is shifted first. While the board has no power or
/// TRST is low, the chain stays in Test-Logic-Reset and TDO reads 1.
class TAVO_SIMULATOR_API JtagPort {
public:
    /// Of an expectation, which stays until the next one.
    static constexpr std::int32_t mostExpectedBits = 1 << 24;
    /// Of a call that repeats or retries, all rounds together, so that it ends in good time.
    static constexpr std::int64_t mostClocks = 5'000'000;
    static constexpr std::int32_t slowest = 1'000;
    static constexpr std::int32_t fastest = 50'000'000;
    static constexpr std::int32_t defaultFrequency = 1'000'000;

    enum class Register { instruction, data };

    /// Expected result of shifts with this number of bits; 0 compares nothing.
    struct Expectation {
        std::int32_t bits = 0;
        std::vector<std::uint8_t> expected;
        std::vector<std::uint8_t> mask;
        bool operator==(const Expectation&) const = default;
    };

    struct Count {
        std::int32_t count = 0;
        bool enable = false;
        bool operator==(const Count&) const = default;
    };

    /// The options of one register.
    struct ShiftOptions {
        Expectation expectation;
        /// How often to retry a shift that does not meet the expectation.
        Count retry;
        /// How often to repeat a shift.
        Count repeat;
        std::int32_t terminationState = static_cast<std::int32_t>(TapState::runTestIdle);
        /// Clocks in Run-Test/Idle before the shift, and after it if it ends there.
        std::int32_t preTck = 0;
        std::int32_t postTck = 0;
        bool operator==(const ShiftOptions&) const = default;
    };

    enum class Pin { tck, tms, tdi, trst };

    /// The appliance's side of a pin: whether it is driven, and the level. An undriven pin is pulled up.
    struct Drive {
        bool driven = false;
        bool level = true;
        bool operator==(const Drive&) const = default;
    };

    struct Outcome {
        /// One of return_code.
        std::int32_t code = 0;
        std::vector<std::uint8_t> captured;
    };

    JtagPort(std::shared_ptr<Board> board, std::vector<TapDescription> taps);

    /// The chain, reset by any loss of power.
    JtagChain& chain();

    /// A shift has any length, unless options make it repeat: see mostClocks.
    Outcome shift(Register target, std::int32_t bits, std::span<const std::uint8_t> data);
    std::int32_t state();
    /// Moves to a resting state. Returns a return_code.
    std::int32_t moveTo(std::int32_t state);
    /// Lets time pass, with TCK running or not. Returns a return_code.
    std::int32_t sleep(bool clocked);

    const ShiftOptions& options(Register target) const { return options_[static_cast<std::size_t>(target)]; }
    /// Returns a return_code; changes nothing unless that is `done`.
    std::int32_t setOptions(Register target, const ShiftOptions& options);

    /// Returns false if the frequency is out of range. Sets the highest frequency the divider allows that is
    /// not above it.
    bool setFrequency(std::int32_t frequency);
    std::uint32_t frequency() const noexcept { return static_cast<std::uint32_t>(fastest) / divider_; }
    std::uint32_t divider() const noexcept { return divider_; }

    Drive pin(Pin pin) const { return pins_[static_cast<std::size_t>(pin)]; }
    std::int32_t setPin(Pin pin, Drive drive);
    bool tdo();

    /// Sets who is told what arrives at the chain from now on; null for nobody.
    void setObserver(std::shared_ptr<TapObserver> observer) { observer_ = std::move(observer); }

    bool enabled() const noexcept { return enabled_; }
    void setEnabled(bool enabled) noexcept { enabled_ = enabled; }

    /// Resets options, pins and enable to their state after power-on of the appliance. The chain belongs to
    /// the board and stays as it is.
    void reset();

private:
    bool level(Pin pin) const;
    /// Brings power and TRST to the chain. Returns whether clocks move it: it has power and is not held in
    /// reset.
    bool moves();
    void clock(bool tms);
    void tellClock(bool tms, bool tdi);
    void tellEnd();
    PackedBits shiftBits(std::span<const std::uint8_t> data, std::size_t bits);
    void clockTo(TapState target);
    void idle(std::int32_t clocks);
    std::vector<std::uint8_t> shiftOnce(Register target, std::int32_t bits,
                                        std::span<const std::uint8_t> data);

    std::shared_ptr<Board> board_;
    JtagChain chain_;
    std::uint32_t powerOnCount_ = 0;
    ShiftOptions options_[2];
    Drive pins_[4];
    std::shared_ptr<TapObserver> observer_;
    // As the observer knows it.
    bool trst_ = true;
    std::uint32_t divider_ = fastest / defaultFrequency;
    bool enabled_ = true;
};

} // namespace TAVO::simulator
