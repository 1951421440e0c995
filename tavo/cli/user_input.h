#pragma once

#include <stdexcept>

#include <tavo/cli/failure.h>

namespace TAVO::cli {

/// What `parse` makes of the user's words. Its std::invalid_argument becomes a Failure (usage) of that text.
template <class Parse>
auto parseInput(Parse parse) {
    try {
        return parse();
    } catch (const std::invalid_argument& error) {
        throw Failure(ExitCode::usage, error.what());
    }
}

} // namespace TAVO::cli
