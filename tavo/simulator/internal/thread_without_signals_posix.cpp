#include <tavo/simulator/internal/thread_without_signals.h>

#include <csignal>
#include <utility>

namespace TAVO::simulator {

std::thread threadWithoutSignals(std::function<void()> function) {
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before);
    std::thread thread(std::move(function));
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    return thread;
}

} // namespace TAVO::simulator
