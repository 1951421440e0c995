#include <tavo/simulator/lock.h>

#include <utility>

#include <tavo/simulator/call_context.h>
#include <tavo/simulator/internal/scramble.h>

namespace TAVO::simulator {

Lock::Lock(std::map<std::string, std::string> accounts)
    : accounts_(std::move(accounts)) {}

std::uint32_t Lock::take(const std::string& user, const std::string& password) {
    check(user, password);
    if (!holder_)
        holder_ = LockHolder{user, static_cast<std::uint32_t>(scrambled(++taken_)) | 1u};
    return holder_->lockId;
}

void Lock::release(const std::string& user, const std::string& password) {
    check(user, password);
    holder_.reset();
}

void Lock::requireFreeOrHeldBy(std::uint32_t lockId) const {
    if (holder_ && holder_->lockId != lockId)
        throw DeviceFault(device_error::locked, holder_->user);
}

void Lock::check(const std::string& user, const std::string& password) const {
    const auto account = accounts_.find(user);
    if (account == accounts_.end() || account->second != password)
        throw DeviceFault(device_error::login, "Wrong user name or password");
    if (holder_ && holder_->user != user)
        throw DeviceFault(device_error::locked, holder_->user);
}

} // namespace TAVO::simulator
