#include <tavo/client/wire/transport.h>

namespace TAVO {

Transport::~Transport() = default;

const std::uint8_t* Transport::receiveInPlace(std::uint64_t) { return nullptr; }

std::span<const std::uint8_t> Transport::held() const noexcept { return {}; }

void Transport::interrupt() noexcept {}

bool Transport::renew() noexcept { return false; }

bool Transport::hasUnaskedBytes() noexcept { return false; }

void Transport::ensureConnected() {}

std::uint64_t Transport::connectionNumber() const noexcept { return 0; }

void Transport::keepConnection(bool) noexcept {}

bool Transport::isConnected() const noexcept { return true; }

void Transport::setTimeLimit(TimeLimit) {}

TimeLimit Transport::timeLimit() const noexcept { return std::nullopt; }

std::intptr_t Transport::descriptor() const noexcept { return -1; }

} // namespace TAVO
