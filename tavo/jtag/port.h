#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include <tavo/client.h>
#include <tavo/jtag/step.h>

namespace TAVO::jtag {

/// How calls reach the device.
struct Executor {
    /// Executes calls in one exchange, such as Device::multicall. A call that the device refuses is no
    /// failure.
    std::function<void(const std::vector<std::shared_ptr<Method>>&)> execute;
    /// Throws if the device refused an executed call.
    std::function<void(const Method&)> insist;
};

/// A "jtag" object of either version, taken over for a while: options that change what shifts do (expected
/// TDO, retries, repeats, clocks before and after, states to end in) are neutral from construction to
/// restore(). Not for several threads.
class Port {
public:
    /// @throws std::invalid_argument for an object of another type.
    Port(std::shared_ptr<const Object_v1_0> object, Executor executor);

    const Object_v1_0& object() const { return *object_; }
    /// The state in which the device says that the controllers are.
    TapState state();
    /// TCK in Hz.
    std::uint32_t frequency() const { return frequency_; }
    /// @return what the device has set: at most `hertz`, where it can.
    std::uint32_t setFrequency(std::uint32_t hertz);
    /// How long that many clocks take, rounded up.
    std::chrono::microseconds timeOf(std::uint64_t clocks) const;

    /// Executes the steps in one exchange; in several if they are very large.
    /// @return what came out on TDO, an entry for each step in order, empty for those that read nothing.
    std::vector<BitString> run(const Steps& steps);

    /// Gives options, pins and frequency back as they were found, by `executor` in place of that of the
    /// constructor: this is for the end, however it came about. A second call does nothing.
    void restore(const Executor& executor);
};

} // namespace TAVO::jtag
