#pragma once

#include <csignal>
#include <thread>
#include <utility>

namespace TAVO::simulator {

/// Starts a thread that receives no signals: they belong to the threads of the program.
template <class Function>
std::thread threadWithoutSignals(Function function) {
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before);
    std::thread thread(std::move(function));
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    return thread;
}

} // namespace TAVO::simulator
