#pragma once

#include <cxxabi.h>

#include <pybind11/pybind11.h>

namespace TAVO::python {

namespace py = pybind11;

/// What the whole process goes through: forks, and the end of the interpreter.
namespace process {

/// Counts forks, in the child: what was made under another number belongs to the parent.
unsigned generation() noexcept;
/// Starts to count.
void watchForks();

/// Whether the interpreter has begun to end, so that no more calls are made.
bool isEnding() noexcept;
/// Whether it has, and another thread than this ends it.
bool isEndedByAnother() noexcept;
void beginEnd() noexcept;
/// Waits, for a few seconds at most, until no thread is in a NoGil any more; those that still are stay there.
/// Call it without the GIL.
void awaitThreads();
/// For a thread that Python lets no more code run in. The GIL must not be held.
[[noreturn]] void sleepToTheEnd();

/// Runs what may run Python code, with the GIL. When the interpreter has gone, Python ends such a thread by
/// pthread_exit(), which C++ does not survive, since other code catches everything: it sleeps instead.
/// @param action owns no Python objects: they would be released by then.
template <class Action>
auto runPython(Action action) {
    try {
        return action();
    } catch (const abi::__forced_unwind&) {
        sleepToTheEnd();
    }
}

} // namespace process

/// Gives up the GIL. Takes it back at the end, unless awaitThreads() has returned in another thread: this one
/// then sleeps until the process has gone, since Python would end it in a way that C++ does not survive.
class NoGil {
public:
    NoGil();
    NoGil(const NoGil&) = delete;
    NoGil& operator=(const NoGil&) = delete;
    ~NoGil();

    /// Runs the signal handlers of Python that are due. False if one has raised an exception, which then is
    /// the pending one of this thread.
    bool handleSignals();
    /// Runs this with the GIL.
    template <class Action>
    void inside(Action action) {
        takeBack();
        try {
            process::runPython([&] { action(); });
        } catch (...) {
            state_ = PyEval_SaveThread();
            throw;
        }
        state_ = PyEval_SaveThread();
    }

    /// Does something with the GIL, in between.
    template <class Action>
    void within(Action action) {
        takeBack();
        action();
        state_ = PyEval_SaveThread();
    }

private:
    void takeBack();

    PyThreadState* state_ = nullptr;
};

} // namespace TAVO::python
