#pragma once

#include <tavo/cli/failure.h>
#include <tavo/config/fault.h>

namespace TAVO::cli {

/// Does something of the library's.
/// @throws Failure (usage) where that throws a fault.
template <class Action>
auto withFailures(Action action) {
    try {
        return action();
    } catch (const config::Fault& fault) {
        throw Failure(ExitCode::usage, fault.what());
    }
}

} // namespace TAVO::cli
