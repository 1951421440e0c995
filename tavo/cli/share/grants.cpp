#include <tavo/cli/share/grants.h>

#include <algorithm>
#include <random>

namespace TAVO::cli {

std::uint32_t Grants::grant() {
    if (lastUses_.size() >= most_)
        lastUses_.erase(std::min_element(lastUses_.begin(), lastUses_.end(),
                                         [](const auto& a, const auto& b) { return a.second < b.second; }));
    std::random_device random;
    std::uint32_t lockId = 0;
    while (lockId == 0 || lastUses_.contains(lockId))
        lockId = random();
    lastUses_[lockId] = ++uses_;
    return lockId;
}

bool Grants::holds(std::uint32_t lockId) {
    const auto found = lastUses_.find(lockId);
    if (found == lastUses_.end())
        return false;
    found->second = ++uses_;
    return true;
}

} // namespace TAVO::cli
