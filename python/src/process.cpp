#include "process.h"

#include <atomic>
#include <chrono>
#include <new>
#include <thread>

#include <pthread.h>

namespace TAVO::python {

namespace {

std::atomic<unsigned> forks = 0;
std::atomic<bool> ending = false;
std::atomic<int> outside = 0;
std::atomic<std::thread::id> endingThread = std::thread::id();

} // namespace

unsigned process::generation() noexcept { return forks; }

void process::watchForks() {
    static const int watched = ::pthread_atfork(nullptr, nullptr, [] {
        ++forks;
        // The other threads are not in the child.
        outside = 0;
    });
    if (watched != 0)
        throw std::bad_alloc();
}

bool process::isEnding() noexcept { return ending; }

void process::beginEnd() noexcept {
    endingThread = std::this_thread::get_id();
    ending = true;
}

void process::awaitThreads() {
    // The caller is outside itself.
    for (int waits = 0; waits < 300 && outside > 1; ++waits)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
}

NoGil::NoGil()
    : state_(PyEval_SaveThread()) {
    ++outside;
}

NoGil::~NoGil() {
    takeBack();
    --outside;
}

bool NoGil::handleSignals() {
    takeBack();
    const bool wentOn = PyErr_CheckSignals() == 0;
    state_ = PyEval_SaveThread();
    return wentOn;
}

void NoGil::takeBack() {
    while (_Py_IsFinalizing() && endingThread.load() != std::this_thread::get_id())
        std::this_thread::sleep_for(std::chrono::seconds(1));
    PyEval_RestoreThread(state_);
}

} // namespace TAVO::python
