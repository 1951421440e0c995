#pragma once

#include <tavo/c/tavo_c.h>

/// What tavo_last_error() tells, for each thread.
namespace TAVO::c {

const tavo_error& lastError() noexcept;

tavo_status noteSuccess() noexcept;
/// Notes the exception that is being handled.
tavo_status noteFailure() noexcept;

/// Runs the action of a function of the C interface. No exception passes.
template <class Action>
tavo_status guarded(Action action) noexcept {
    try {
        action();
        return noteSuccess();
    } catch (...) {
        return noteFailure();
    }
}

} // namespace TAVO::c
