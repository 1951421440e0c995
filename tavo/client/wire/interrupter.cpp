#include <tavo/client/wire/interrupter.h>

#include <thread>

#include <tavo/client/wire/internal/socket.h>

namespace TAVO {

void Interrupter::interrupt() noexcept {
    // Announced before the socket is read: its owner withdraws it, then waits for who may still act on it.
    ++acting_;
    ++interrupts_;
    if (const auto socket = socket_.load(); socket != noSocket)
        sockets::shutDown(socket);
    --acting_;
}

bool Interrupter::beginExchange() noexcept {
    const auto seenBefore = seen_;
    const std::uint32_t interrupts = interrupts_;
    if (operations_ == 0)
        seen_ = interrupts;
    return interrupts == seenBefore;
}

void Interrupter::withdraw() noexcept {
    socket_ = noSocket;
    while (acting_ != 0)
        std::this_thread::yield();
}

Interrupter::Operation::Operation(Interrupter& interrupter) noexcept
    : interrupter_(interrupter) {
    interrupter_.beginExchange();
    ++interrupter_.operations_;
}

Interrupter::Operation::~Operation() { --interrupter_.operations_; }

} // namespace TAVO
