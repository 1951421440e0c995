#include <tavo/simulator/call_context.h>

#include <algorithm>

#include <tavo/simulator/appliance.h>

namespace TAVO::simulator {

Refusal::Refusal(std::int32_t code)
    : code_(code) {}

Refusal::~Refusal() = default;

const char* Refusal::what() const noexcept { return "refused with a return code"; }

DeviceFault::DeviceFault(std::uint32_t code, const std::string& message)
    : std::runtime_error(message)
    , code_(code) {}

DeviceFault::~DeviceFault() = default;

CallContext::CallContext(Appliance& appliance, std::uint32_t lockId, std::uint64_t connection)
    : appliance_(appliance)
    , lockId_(lockId)
    , connection_(connection) {
    appliance_.served_ = this;
}

CallContext::~CallContext() { appliance_.served_ = nullptr; }

std::string CallContext::user() const {
    const auto& holder = appliance_.lock().holder();
    return holder && holder->lockId == lockId_ ? holder->user : std::string();
}

std::int64_t CallContext::time() const { return appliance_.clock().time() + delay_.count(); }

std::int64_t CallContext::elapsed() const { return appliance_.clock().elapsed() + delay_.count(); }

void CallContext::delay(std::chrono::microseconds duration) {
    delay_ += std::clamp(duration, std::chrono::microseconds(0), Clock::longest - delay_);
}

} // namespace TAVO::simulator
