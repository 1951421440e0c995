#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>

#include <tavo/simulator/export.h>

namespace TAVO::simulator {

/// The user who holds the appliance's lock, and the lock id in that user's requests.
struct LockHolder {
    std::string user;
    std::uint32_t lockId = 0;
    bool operator==(const LockHolder&) const = default;
};

/// The appliance's only lock, and the accounts that may take it. The lock belongs to a user, not to a
/// connection, so it outlives the connection.
class TAVO_SIMULATOR_API Lock {
public:
    /// @param accounts user names and passwords.
    explicit Lock(std::map<std::string, std::string> accounts);

    const std::map<std::string, std::string>& accounts() const { return accounts_; }
    const std::optional<LockHolder>& holder() const { return holder_; }

    /// Takes the lock for a user and returns the lock id: the same one if the user already holds the lock.
    /// @throws DeviceFault (device_error::login) for wrong credentials, (device_error::locked) with the
    ///         holder's name as message.
    std::uint32_t take(const std::string& user, const std::string& password);
    /// Releases the lock. Does nothing if nobody holds it.
    /// @throws DeviceFault as take().
    void release(const std::string& user, const std::string& password);
    /// Releases the lock, whoever holds it.
    void drop() { holder_.reset(); }

    /// @throws DeviceFault (device_error::locked) with the holder's name if the lock is held under another
    ///         id.
    void requireFreeOrHeldBy(std::uint32_t lockId) const;

private:
    void check(const std::string& user, const std::string& password) const;

    std::map<std::string, std::string> accounts_;
    std::optional<LockHolder> holder_;
    std::uint64_t taken_ = 0;
};

} // namespace TAVO::simulator
