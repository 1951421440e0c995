#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include <tavo/simulator/export.h>
#include <tavo/simulator/models/board.h>

namespace TAVO::simulator {

/// The debug request and ready signals of a processor with four cores. DBREQ goes to all cores; each halted
/// core asserts its own DBRDY line.
///
/// Events happen at their own times, however late they are queried. All times come from the board.
class TAVO_SIMULATOR_API DebugSignals : private BoardObserver {
public:
    static constexpr std::size_t coreCount = 4;
    static constexpr std::size_t triggerCount = 4;
    /// From DBREQ to a core's DBRDY, in microseconds.
    static constexpr std::uint64_t haltDelay = 10;

    using Lines = std::array<bool, coreCount>;

    /// What asserted DBREQ first since the last clear.
    enum class Source : std::int32_t { none, command, debugReady, reset, trigger };

    struct TriggerSetup {
        std::int32_t mode = 0; ///< 0 off, 1 input, 2 output
        std::int32_t edge = 0; ///< 0 rising, 1 falling, 2 both
        std::int32_t pulseWidth = 0;
        std::int32_t count = 0;
        std::int32_t delay = 0;
        std::int32_t invert = 0;
        std::int32_t source = 0; ///< 0 none, 1 any DBRDY, 2 DBREQ, 3 reset
        bool operator==(const TriggerSetup&) const = default;
    };

    struct OnTrigger {
        bool enabled = false;
        std::int32_t index = 0;
        bool operator==(const OnTrigger&) const = default;
    };

    struct Options {
        bool onDebugReady = false;
        bool onReset = false;
        std::array<OnTrigger, 2> onTrigger;
        /// Nanoseconds until DBREQ is deasserted by itself; 0 keeps it asserted. The cores stay halted until
        /// it is released.
        std::int32_t pulseWidth = 0;
        /// The lines that take part.
        Lines mask{true, true, true, true};
        bool operator==(const Options&) const = default;
    };

    explicit DebugSignals(std::shared_ptr<Board> board);
    ~DebugSignals() override;

    bool debugRequest();
    void setDebugRequest(bool level);
    Lines debugReady();
    /// The lines that were true at any time since clearSnapshot().
    Lines snapshot();
    void clearSnapshot();
    Source source();
    void clearSource();
    /// Lets simulated time pass until one of `lines` is true. Returns false after `timeout` microseconds.
    bool waitForDebugReady(const Lines& lines, std::uint64_t timeout,
                           const std::function<void(std::uint64_t)>& pass);

    /// Whether the signals are driven. Only stored here; the remote object checks it.
    bool enabled() const noexcept { return enabled_; }
    void setEnabled(bool enabled) noexcept { enabled_ = enabled; }

    const Options& options() const noexcept { return options_; }
    void setOptions(const Options& options);

    /// For all of these the index must be below triggerCount.
    bool trigger(std::size_t index);
    void setTrigger(std::size_t index, bool level);
    const TriggerSetup& setup(std::size_t index) const { return setups_.at(index); }
    void setSetup(std::size_t index, const TriggerSetup& setup) { setups_.at(index) = setup; }

    /// Halts a core as a breakpoint would. Does nothing unless it runs.
    void haltCore(std::size_t core);
    /// As after power-on of the appliance.
    void reset();

private:
    void settle(std::uint64_t time) override;
    void boardChanged() override;

    std::uint64_t present();
    std::optional<std::uint64_t> nextEvent() const;
    void happen(std::uint64_t time);
    void assertRequest(std::uint64_t time, Source source);
    void haltRunningCores(std::uint64_t time);
    void becomeReady(std::size_t core, std::uint64_t time);
    bool followed(const TriggerSetup& setup);

    Options options_;
    std::array<TriggerSetup, triggerCount> setups_;
    std::array<bool, triggerCount> triggers_{};
    bool enabled_ = true;
    bool request_ = false;
    std::optional<std::uint64_t> requestEnd_;
    Lines ready_{};
    std::array<std::optional<std::uint64_t>, coreCount> readyAt_;
    Lines snapshot_{};
    Source source_ = Source::none;
    bool running_ = false;
    std::optional<std::uint64_t> resetRelease_;
};

} // namespace TAVO::simulator
