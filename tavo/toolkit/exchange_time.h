#pragma once

#include <chrono>
#include <memory>
#include <vector>

#include <tavo/client.h>

namespace TAVO::toolkit {

/// How long the device may be busy with these calls themselves: it sleeps and waits on purpose, moves many
/// bytes over a slow bus, or stores an image. A time limit begins behind that. Generous, and 0 for calls that
/// are answered at once. Units that the device defines are those of the simulated modules.
std::chrono::milliseconds busyTime(const std::vector<std::shared_ptr<Method>>& methods);

/// Gives an exchange more time than the limit while it exists.
class LongerLimit {
public:
    LongerLimit(Device& device, std::chrono::milliseconds more)
        : device_(device)
        , before_(device.timeLimit()) {
        if (before_ && more.count() > 0)
            device_.setTimeLimit(*before_ + more);
    }
    LongerLimit(const LongerLimit&) = delete;
    LongerLimit& operator=(const LongerLimit&) = delete;
    ~LongerLimit() {
        if (device_.timeLimit() != before_)
            device_.setTimeLimit(before_);
    }

private:
    Device& device_;
    TimeLimit before_;
};

} // namespace TAVO::toolkit
