#include <tavo/cli/interrupt.h>

#include <algorithm>
#include <csignal>

#include <poll.h>

namespace TAVO::cli {

namespace {

volatile std::sig_atomic_t caught = 0;
void (*volatile lastWillOfWatch)() = nullptr;

void remember(int signal) {
    if (caught != 0) {
        if (lastWillOfWatch != nullptr)
            lastWillOfWatch();
        std::signal(signal, SIG_DFL);
        std::raise(signal);
    }
    caught = signal;
}

} // namespace

InterruptWatch::InterruptWatch(void (*lastWill)()) {
    caught = 0;
    lastWillOfWatch = lastWill;
    struct sigaction action {};
    action.sa_handler = remember;
    sigemptyset(&action.sa_mask);
    for (std::size_t i = 0; i < signals_.size(); ++i) {
        ::sigaction(signals_[i], &action, &before_[i]);
        if (before_[i].sa_handler == SIG_IGN)
            ::sigaction(signals_[i], &before_[i], nullptr);
    }
}

InterruptWatch::~InterruptWatch() {
    for (std::size_t i = 0; i < signals_.size(); ++i)
        ::sigaction(signals_[i], &before_[i], nullptr);
    lastWillOfWatch = nullptr;
}

bool InterruptWatch::waitForInput(int descriptor, std::chrono::milliseconds time) {
    // In steps, for a signal may come to another thread or just before the wait.
    using Clock = std::chrono::steady_clock;
    const auto end = Clock::now() + time;
    bool readable = false;
    do {
        constexpr std::chrono::milliseconds step(50);
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - Clock::now());
        pollfd watched{descriptor, POLLIN, 0};
        const auto slice = std::clamp(left, std::chrono::milliseconds(0), step).count();
        readable = caught == 0 && ::poll(&watched, 1, static_cast<int>(slice)) > 0;
    } while (caught == 0 && !readable && Clock::now() < end);
    if (caught != 0)
        throw Interrupted(caught);
    return readable;
}

void dieOf(const Interrupted& interrupted) {
    std::signal(interrupted.signal, SIG_DFL);
    std::raise(interrupted.signal);
}

} // namespace TAVO::cli
