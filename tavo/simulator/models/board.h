#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include <tavo/simulator/export.h>

namespace TAVO::simulator {

class BoardObserver;

/// The target board shared by all models of an appliance: power, reset line and boot.
///
/// Nothing runs in the background: every answer follows from the time of `now`, in microseconds. Not
/// thread-safe: serialise the calls to a shared board.
class TAVO_SIMULATOR_API Board {
public:
    using Clock = std::function<std::uint64_t()>;

    /// From power-on to power-good, in microseconds.
    static constexpr std::uint64_t powerGoodDelay = 100'000;
    /// From the start of a boot to the release of reset.
    static constexpr std::uint64_t resetDelay = 200'000;
    /// From the start of a boot to its last POST code.
    static constexpr std::uint64_t bootDuration = 3'000'000;

    /// The board is off.
    explicit Board(Clock now);

    Board(const Board&) = delete;
    Board& operator=(const Board&) = delete;

    /// The current time. Never decreases, even if the clock does.
    std::uint64_t now();

    /// Switches at once and cancels a running pulse. Switching to the current state changes nothing.
    void setPower(bool on);
    /// Switches like setPower(), and back after `duration` microseconds.
    void pulsePower(bool on, std::uint64_t duration);

    bool powered();
    /// True from powerGoodDelay after power-on.
    bool powerGood();
    /// True from the start of a boot until reset is released, and without power.
    bool inReset();
    /// Microseconds since power-on; empty without power.
    std::optional<std::uint64_t> sincePowerOn();
    /// Microseconds since the current boot began, by power-on or reboot(); empty without power.
    std::optional<std::uint64_t> sinceBoot();
    /// When the current boot began; empty without power.
    std::optional<std::uint64_t> bootTime();
    /// True once the current boot has ended.
    bool booted();

    /// Number of power-ons.
    std::uint32_t powerOnCount();
    /// Number of boots.
    std::uint32_t bootCount();
    /// Restarts the boot. Does nothing without power.
    void reboot();

    /// Clears the firmware's settings; the next boot finds them cleared.
    void clearCmos();
    std::uint32_t cmosClearCount() const noexcept;
    /// Whether the current boot found its settings cleared.
    bool bootFoundClearedCmos();

    /// In degrees Celsius.
    double temperature() const noexcept { return temperature_; }
    void setTemperature(double celsius) noexcept { temperature_ = celsius; }

    /// Ends a pulse that is due, at its own time. Every query does so by itself. A model that the next boot
    /// depends on must call it before changing.
    void settle();

private:
    friend class BoardObserver;

    void switchPower(bool on, std::uint64_t time);
    void beginBoot(std::uint64_t time);
    void bringObserversTo(std::uint64_t time);
    void tellObservers();

    Clock now_;
    std::uint64_t latest_ = 0;
    std::vector<BoardObserver*> observers_;
    std::optional<std::uint64_t> pulseEnd_;
    std::optional<std::uint64_t> powerOnTime_;
    std::uint64_t bootTime_ = 0;
    std::uint32_t powerOnCount_ = 0;
    std::uint32_t bootCount_ = 0;
    std::uint32_t cmosClearCount_ = 0;
    bool cmosCleared_ = false;
    bool bootFoundClearedCmos_ = false;
    double temperature_ = 36.5;
};

/// Base of models whose own state follows the board.
///
/// Keeps the board alive; unregisters when destroyed.
class TAVO_SIMULATOR_API BoardObserver {
public:
    BoardObserver(const BoardObserver&) = delete;
    BoardObserver& operator=(const BoardObserver&) = delete;

protected:
    explicit BoardObserver(std::shared_ptr<Board> board);
    virtual ~BoardObserver();

    Board& board() const noexcept { return *board_; }

    /// Called before the board changes at `time`: catch up with everything until then. The board still
    /// reports its state from before the change, but elapsed times are those of the present.
    virtual void settle(std::uint64_t time) = 0;
    /// Called after the power has been switched or a boot has begun.
    virtual void boardChanged() = 0;

private:
    friend class Board;

    std::shared_ptr<Board> board_;
};

} // namespace TAVO::simulator
