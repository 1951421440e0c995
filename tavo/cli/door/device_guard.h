#pragma once

#include <exception>
#include <functional>
#include <utility>

#include <tavo/cli/interrupt.h>

namespace TAVO::cli {

/// Uses the device until it fails for the first time. From then on its clients, which may not bear to lose
/// their connection, are answered without it.
class DeviceGuard {
public:
    using Tell = std::function<void(const std::exception&)>;

    /// @param tell is told of the failure.
    explicit DeviceGuard(Tell tell)
        : tell_(std::move(tell)) {}

    /// Runs the action unless the device has failed.
    /// @return whether it was done. @throws Interrupted.
    template <class Action>
    bool attempt(Action action) {
        if (failure_)
            return false;
        try {
            action();
            return true;
        } catch (const Interrupted&) {
            throw;
        } catch (const std::exception& failure) {
            failure_ = std::current_exception();
            tell_(failure);
            return false;
        }
    }

    bool hasFailed() const { return failure_ != nullptr; }
    /// @throws the failure, if there was one.
    void throwIfFailed() const {
        if (failure_)
            std::rethrow_exception(failure_);
    }

private:
    Tell tell_;
    std::exception_ptr failure_;
};

} // namespace TAVO::cli
