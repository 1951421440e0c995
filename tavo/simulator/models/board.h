#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include <tavo/simulator/export.h>

namespace TAVO::simulator {

class BoardObserver;

/// The target board that all of an appliance's models look at: its power, its reset line, its boot.
///
/// Nothing runs by itself: every question is answered from the time that `now` gives, in microseconds. Not
/// thread-safe; whoever shares a board serialises the calls.
class TAVO_SIMULATOR_API Board {
public:
    using Clock = std::function<std::uint64_t()>;

    /// From switching on to a true power-good signal, in microseconds.
    static constexpr std::uint64_t powerGoodDelay = 100'000;
    /// From the start of a boot to the release of reset.
    static constexpr std::uint64_t resetDelay = 200'000;
    /// From the start of a boot to its last POST code.
    static constexpr std::uint64_t bootDuration = 3'000'000;

    /// The board is off.
    explicit Board(Clock now);

    Board(const Board&) = delete;
    Board& operator=(const Board&) = delete;

    /// The present time. Never goes back, even where the clock does.
    std::uint64_t now();

    /// Switches at once; a pulse that has not ended yet is forgotten. The same state again changes nothing.
    void setPower(bool on);
    /// Switches as setPower, and to the other state after `duration` microseconds.
    void pulsePower(bool on, std::uint64_t duration);

    bool powered();
    /// True from powerGoodDelay after switching on.
    bool powerGood();
    /// True from the start of a boot until reset is released, and while there is no power.
    bool inReset();
    /// Microseconds since the board was switched on; empty without power.
    std::optional<std::uint64_t> sincePowerOn();
    /// Microseconds since the current boot began: by power, or by reboot(); empty without power.
    std::optional<std::uint64_t> sinceBoot();
    /// When the current boot began; empty without power.
    std::optional<std::uint64_t> bootTime();
    /// True once the current boot has ended.
    bool booted();

    /// How often the board was switched on.
    std::uint32_t powerOnCount();
    /// How often it began to boot.
    std::uint32_t bootCount();
    /// Begins the boot anew with the power on; nothing without power.
    void reboot();

    /// Clears the settings that the firmware keeps; the next boot finds them cleared.
    void clearCmos();
    std::uint32_t cmosClearCount() const noexcept;
    /// Whether the current boot found its settings cleared.
    bool bootFoundClearedCmos();

    /// How warm it is, in degrees Celsius.
    double temperature() const noexcept { return temperature_; }
    void setTemperature(double celsius) noexcept { temperature_ = celsius; }

    /// Applies what is due, the end of a pulse, at its own time. Every question does so by itself; a model
    /// that the board's next boot looks at does it before it changes.
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

/// A model with a state of its own that follows the board.
///
/// Keeps the board alive, and is forgotten by it when destroyed.
class TAVO_SIMULATOR_API BoardObserver {
public:
    BoardObserver(const BoardObserver&) = delete;
    BoardObserver& operator=(const BoardObserver&) = delete;

protected:
    explicit BoardObserver(std::shared_ptr<Board> board);
    virtual ~BoardObserver();

    Board& board() const noexcept { return *board_; }

    /// Called before the board changes at `time`: what happens until then has to be done now. The board still
    /// tells its state from before the change, but elapsed times only as of the present.
    virtual void settle(std::uint64_t time) = 0;
    /// Called after the power was switched or a boot began.
    virtual void boardChanged() = 0;

private:
    friend class Board;

    std::shared_ptr<Board> board_;
};

} // namespace TAVO::simulator
