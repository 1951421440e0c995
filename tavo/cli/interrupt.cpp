#include <tavo/cli/interrupt.h>

#include <csignal>
#include <utility>

#include <poll.h>

namespace TAVO::cli {

namespace {

volatile std::sig_atomic_t caught = 0;
void (*volatile lastWill)() = nullptr;

void remember(int signal) {
    if (caught != 0) {
        if (lastWill != nullptr)
            lastWill();
        std::signal(signal, SIG_DFL);
        std::raise(signal);
    }
    caught = signal;
}

} // namespace

std::atomic<bool> InterruptWatch::there_ = false;

InterruptWatch::InterruptWatch() {
    caught = 0;
    there_ = true;
    struct sigaction action {};
    action.sa_handler = remember;
    sigemptyset(&action.sa_mask);
    for (std::size_t i = 0; i < signals_.size(); ++i) {
        ::sigaction(signals_[i], &action, &before_[i]);
        if (before_[i].sa_handler == SIG_IGN)
            ::sigaction(signals_[i], &before_[i], nullptr);
    }
    // What stops and continues the process concerns the terminal, which is the first thread's.
    sigset_t stopping;
    sigset_t mask;
    sigemptyset(&stopping);
    sigaddset(&stopping, SIGTSTP);
    sigaddset(&stopping, SIGCONT);
    ::pthread_sigmask(SIG_BLOCK, &stopping, &mask);
    thread_ = std::thread([this] { watch(); });
    ::pthread_sigmask(SIG_SETMASK, &mask, nullptr);
}

InterruptWatch::~InterruptWatch() {
    {
        const std::lock_guard lock(mutex_);
        done_ = true;
    }
    changed_.notify_all();
    thread_.join();
    for (std::size_t i = 0; i < signals_.size(); ++i)
        ::sigaction(signals_[i], &before_[i], nullptr);
    there_ = false;
}

void InterruptWatch::alsoInterrupt(std::function<void()> action) {
    const std::lock_guard lock(mutex_);
    alsoInterrupt_ = std::move(action);
}

void InterruptWatch::setWaiting(bool waiting) {
    const std::lock_guard lock(mutex_);
    waiting_ = waiting;
    if (waiting)
        endedWait_ = false;
}

void InterruptWatch::watch() {
    constexpr Milliseconds step(20);
    std::optional<Clock::time_point> endOfGrace;
    std::unique_lock lock(mutex_);
    while (!changed_.wait_for(lock, step, [this] { return done_; })) {
        const auto now = Clock::now();
        if (caught == 0)
            endOfGrace.reset();
        else if (!endOfGrace)
            endOfGrace = now + grace;
        if (!waiting_ || !endOfGrace || now < *endOfGrace)
            continue;
        // Again at every step while the wait lasts: it may not have reached the connection before.
        endedWait_ = true;
        interrupter_->interrupt();
        if (alsoInterrupt_)
            alsoInterrupt_();
    }
}

void InterruptWatch::forget() { caught = 0; }

void InterruptWatch::throwIfInterrupted() {
    if (caught != 0)
        throw Interrupted(caught);
}

int InterruptWatch::takeSignal() {
    const int signal = caught;
    caught = 0;
    return signal;
}

bool InterruptWatch::waitForInput(int descriptor, Milliseconds time) {
    // In steps, for a signal may come to another thread or just before the wait.
    const auto end = Clock::now() + time;
    bool readable = false;
    do {
        constexpr Milliseconds step(50);
        const auto left = std::chrono::ceil<Milliseconds>(end - Clock::now());
        pollfd watched{descriptor, POLLIN, 0};
        const auto pause = std::clamp(left, Milliseconds(0), step).count();
        readable = caught == 0 && ::poll(&watched, 1, static_cast<int>(pause)) > 0;
    } while (caught == 0 && !readable && Clock::now() < end);
    throwIfInterrupted();
    return readable;
}

InterruptWatch::LastWill::LastWill(void (*will)()) { lastWill = will; }

InterruptWatch::LastWill::~LastWill() { lastWill = nullptr; }

void dieOf(int signal) {
    std::signal(signal, SIG_DFL);
    std::raise(signal);
}

} // namespace TAVO::cli
