#include <tavo/cli/interrupt.h>

#include <algorithm>
#include <csignal>

#include <poll.h>

namespace TAVO::cli {

namespace {

volatile std::sig_atomic_t caught = 0;

void remember(int signal) { caught = signal; }

} // namespace

InterruptWatch::InterruptWatch() {
    caught = 0;
    struct sigaction action {};
    action.sa_handler = remember;
    sigemptyset(&action.sa_mask);
    ::sigaction(SIGINT, &action, &beforeInt_);
    ::sigaction(SIGTERM, &action, &beforeTerm_);
}

InterruptWatch::~InterruptWatch() {
    ::sigaction(SIGINT, &beforeInt_, nullptr);
    ::sigaction(SIGTERM, &beforeTerm_, nullptr);
}

void InterruptWatch::pause(std::chrono::milliseconds time) {
    // In steps, for a signal may come to another thread or just before the wait.
    using Clock = std::chrono::steady_clock;
    const auto end = Clock::now() + time;
    while (caught == 0 && Clock::now() < end) {
        constexpr std::chrono::milliseconds step(50);
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(end - Clock::now());
        ::poll(nullptr, 0, static_cast<int>(std::clamp(left, std::chrono::milliseconds(1), step).count()));
    }
    if (caught != 0)
        throw Interrupted(caught);
}

void dieOf(const Interrupted& interrupted) {
    std::signal(interrupted.signal, SIG_DFL);
    std::raise(interrupted.signal);
}

} // namespace TAVO::cli
