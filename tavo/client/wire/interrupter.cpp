#include <tavo/client/wire/interrupter.h>

#include <chrono>
#include <thread>
#include <utility>

#include <tavo/client/wire/internal/socket.h>

namespace TAVO {

void Interrupter::interrupt() noexcept {
    // This thread counts, then reads the socket; the device's thread publishes, then reads the count. So one
    // of them always notices the other.
    ++interrupts_;
    while (true) {
        auto socket = socket_.load();
        if (socket == noSocket || socket == claimed || socket == awaited)
            return;
        if (!socket_.compare_exchange_strong(socket, claimed))
            continue;

        const auto counted = interrupts_.load();
        const bool pending = settled_ != counted;
        if (pending)
            sockets::shutDown(socket);
        auto expected = claimed;
        if (!socket_.compare_exchange_strong(expected, socket))
            socket_ = noSocket;
        // Threads that came meanwhile have left their interrupts to this one.
        if (pending || interrupts_ == counted)
            return;
    }
}

void Interrupter::endWhen(std::function<bool()> shouldEnd) { shouldEnd_ = std::move(shouldEnd); }

void Interrupter::ask() noexcept {
    if (shouldEnd_ && shouldEnd_())
        interrupt();
}

Interrupter::Count Interrupter::beginExchange() noexcept {
    const Count begin = operations_ > 0 ? operationBegin_ : interrupts_.load();
    // cppcheck-suppress duplicateConditionalAssign; an atomic read costs each exchange less than a write
    if (settled_ != begin)
        settled_ = begin;
    return begin;
}

bool Interrupter::publish(std::intptr_t socket) noexcept {
    if (socket == published_)
        return false;
    withdraw(published_);
    published_ = socket;
    socket_ = socket;
    return true;
}

void Interrupter::withdraw(std::intptr_t socket) noexcept {
    if (socket != published_ || socket == noSocket)
        return;
    published_ = noSocket;
    if (socket_.exchange(awaited) != claimed)
        socket_ = noSocket;
    // Sleeps, because a real-time thread that merely yields would starve the thread it waits for.
    while (socket_ == awaited)
        std::this_thread::sleep_for(std::chrono::microseconds(100));
}

Interrupter::Operation::Operation(Interrupter& interrupter) noexcept
    : interrupter_(interrupter) {
    if (interrupter_.operations_++ == 0)
        interrupter_.operationBegin_ = interrupter_.interrupts_;
}

Interrupter::Operation::~Operation() { --interrupter_.operations_; }

} // namespace TAVO
