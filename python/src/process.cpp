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
/// Of those outside, the ones that are about to have the GIL again.
std::atomic<int> returning = 0;
/// Nobody returns any more, but the thread that ends the interpreter.
std::atomic<bool> shut = false;
std::atomic<std::thread::id> endingThread = std::thread::id();

} // namespace

unsigned process::generation() noexcept { return forks; }

void process::watchForks() {
    static const int watched = ::pthread_atfork(nullptr, nullptr, [] {
        ++forks;
        // The other threads are not in the child.
        outside = 0;
        returning = 0;
    });
    if (watched != 0)
        throw std::bad_alloc();
}

bool process::isEnding() noexcept { return ending; }

bool process::isEndedByAnother() noexcept {
    return ending && endingThread.load() != std::this_thread::get_id();
}

void process::beginEnd() noexcept {
    endingThread = std::this_thread::get_id();
    ending = true;
}

void process::awaitThreads() {
    // The caller is outside itself.
    for (int waits = 0; waits < 300 && outside > 1; ++waits)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    shut = true;
    // The GIL is free for these, until they give it up again.
    while (returning > 0)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
}

void process::sleepToTheEnd() {
    for (;;)
        std::this_thread::sleep_for(std::chrono::hours(1));
}

NoGil::NoGil() {
    // Before another thread can have the GIL and count.
    ++outside;
    state_ = PyEval_SaveThread();
}

NoGil::~NoGil() {
    takeBack();
    --outside;
}

bool NoGil::handleSignals() {
    takeBack();
    const bool wentOn = process::runPython([] { return PyErr_CheckSignals() == 0; });
    state_ = PyEval_SaveThread();
    return wentOn;
}

void NoGil::takeBack() {
    ++returning;
    if ((shut && process::isEndedByAnother()) ||
        (_Py_IsFinalizing() && endingThread.load() != std::this_thread::get_id())) {
        --returning;
        process::sleepToTheEnd();
    }
    PyEval_RestoreThread(state_);
    --returning;
}

} // namespace TAVO::python
