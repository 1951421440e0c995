#pragma once

#include <stdexcept>

#include <tavo/cli/failure.h>

namespace TAVO::cli {

/// Parses the user's words. Turns std::invalid_argument into Failure (usage) with the same text.
template <class Parse>
auto parseInput(Parse parse) {
    try {
        return parse();
    } catch (const std::invalid_argument& error) {
        throw Failure(ExitCode::usage, error.what());
    }
}

} // namespace TAVO::cli
