#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include <tavo/client.h>
#include <tavo/jtag/step.h>

namespace TAVO::jtag {

using Methods = std::vector<std::shared_ptr<Method>>;

/// The options of a "jtag" object that change what its shifts do, the same for both versions. Only builds
/// calls: executing them is up to the caller. An option that the device does not list is left out.
class ShiftOptions {
public:
    virtual ~ShiftOptions() = default;

    /// Asks for all options.
    virtual Methods get() = 0;
    /// Sets what was found to be set so that shifts do nothing but shift. Call it once get() was executed.
    virtual Methods neutralise() const = 0;
    /// Sets all options as they were found.
    virtual Methods restore() const = 0;

    virtual Methods endIn(TapState ir, TapState dr) const = 0;
    virtual Methods poll(Register target, const Poll& poll) const = 0;
    virtual Methods endPoll() const = 0;

    virtual std::shared_ptr<BoundMethod<dto::Base::FrequencyGetReply>> frequencyGet() const = 0;
    virtual std::shared_ptr<Method> frequencySet(std::int32_t hertz) const = 0;
};

/// @param object must outlive the options.
/// @throws std::invalid_argument for an object of another type.
std::unique_ptr<ShiftOptions> shiftOptionsOf(const Object_v1_0& object);

} // namespace TAVO::jtag
