#pragma once

#include <cstddef>
#include <cstdint>
#include <map>

namespace TAVO::cli {

/// The lock ids of the clients that have shown user and password. They outlive the connections, as those of a
/// device do.
class Grants {
public:
    /// @param most of so many lock ids, the one that has not been used for longest is withdrawn.
    explicit Grants(std::size_t most = 4096)
        : most_(most) {}

    /// A new lock id, which nobody can guess.
    std::uint32_t grant();
    bool holds(std::uint32_t lockId);
    void revoke(std::uint32_t lockId) { lastUses_.erase(lockId); }

private:
    std::size_t most_;
    std::uint64_t uses_ = 0;
    std::map<std::uint32_t, std::uint64_t> lastUses_;
};

} // namespace TAVO::cli
