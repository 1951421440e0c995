#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include <tavo/client.h>
#include <tavo/jtag/shift_options.h>
#include <tavo/jtag/step.h>

namespace TAVO::jtag {

/// How calls reach the device.
struct Executor {
    /// Executes calls in one exchange, such as Device::multicall. A call that the device refuses is no
    /// failure.
    std::function<void(const Methods&)> execute;
    /// Throws if the device refused an executed call.
    std::function<void(const Method&)> insist;
};

/// A "jtag" object of either version, taken over for a while: options that change what shifts do (expected
/// TDO, retries, repeats, clocks before and after, states to end in) are neutral from the first run() to
/// restore(). Units and flags are those of the simulated module: microseconds, Hz, driven and level. Not for
/// several threads.
class Port {
public:
    /// Asks the device what is set. One exchange.
    /// @throws std::invalid_argument for an object of another type; what the executor throws.
    Port(std::shared_ptr<const Object_v1_0> object, Executor executor);

    const Object_v1_0& object() const { return *object_; }
    /// Asks in which state the controllers are. One exchange.
    /// @throws std::runtime_error for a number that is no state.
    TapState state();
    /// TCK in Hz, more than 0.
    std::int32_t frequency() const { return frequency_; }
    /// Asks for at most `hertz`. One exchange.
    /// @return what the device has set.
    std::int32_t setFrequency(std::int32_t hertz);
    /// The frequency that was found.
    std::int32_t foundFrequency() const { return foundFrequency_; }
    /// How long that many clocks take, rounded up.
    std::chrono::microseconds timeOf(std::uint64_t clocks) const;

    /// Executes the steps in one exchange; in several if they are very large.
    /// @return what came out on TDO, an entry for each step in order, empty for those that read nothing. A
    ///         shift that the device compares in vain (Poll) has what came last.
    /// @throws std::invalid_argument for an Idle longer than a day; std::runtime_error for captured bits of
    /// the wrong length; what the executor throws. Steps
    ///         behind a failure may have been executed.
    std::vector<BitString> run(const Steps& steps);

    /// Gives options, pins and frequency back as they were found, by `executor` in place of that of the
    /// constructor: this is for the end, however it came about. A second call does nothing.
    void restore(const Executor& executor);

private:
    class Batch;
    struct FoundPins {
        std::shared_ptr<BoundMethod<dto::Header::IoGetReply>> trst, tck, tms, tdi;
    };

    static std::int32_t usable(const BoundMethod<dto::Base::FrequencyGetReply>& asked);
    Methods releasing();

    std::shared_ptr<const Object_v1_0> object_;
    Executor executor_;
    std::unique_ptr<ShiftOptions> options_;
    FoundPins foundPins_;
    std::int32_t foundFrequency_ = 0;
    std::int32_t frequency_ = 0;
    bool isNeutral_ = false;
    bool isRestored_ = false;
    bool setsFrequency_ = false;
    bool drivesTrst_ = false;
    bool drivesClockPins_ = false;
    /// The states that shifts end in; empty where nobody knows.
    std::optional<TapState> irEnd_, drEnd_;
    /// What is driven while clocks are made by pins.
    struct DrivenPins {
        bool tck;
        std::optional<bool> tms, tdi;
    };
    std::optional<DrivenPins> driven_;
};

} // namespace TAVO::jtag
