#include <tavo/client/object/device.h>

#include <tavo/client/object/internal/return_code.h>

#include <utility>

namespace TAVO {

Device::Device()
    : Container("", nullptr) {}
Device::~Device() = default;

void Device::initalize() {}

void Device::execute(const std::shared_ptr<Method>& method) {
    call(method);
    requireSuccess(*method, method->getContainer().getFullName());
}

void Device::relock() { lock(); }

void Device::interrupt() noexcept {}

bool Device::isLocked() const noexcept { return false; }

std::optional<std::string> Device::lockHolder() { return std::nullopt; }

bool Device::isConnected() const noexcept { return false; }

std::uint64_t Device::reconnects() const noexcept { return 0; }

void Device::setTimeLimit(TimeLimit) {}

TimeLimit Device::timeLimit() const noexcept { return std::nullopt; }

void Device::setSystem(std::shared_ptr<System_v1_0> object) { system_ = std::move(object); }
void Device::setPrivate(std::shared_ptr<Private_v1_0> object) { private_ = std::move(object); }

} // namespace TAVO
