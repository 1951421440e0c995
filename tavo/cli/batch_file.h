#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include <tavo/cli/prepared_call.h>

namespace TAVO::cli {

/// A call in a batch file.
struct BatchLine {
    /// "FILE:NUMBER", for messages.
    std::string place;
    /// Counted from 1.
    std::size_t number = 0;
    CallWords words;
};

/// Parses a batch file. Skips empty lines and comments.
/// @param file its name in messages.
/// @throws Failure (usage) whose text starts with the place.
std::vector<BatchLine> parseBatch(const std::string& file, const std::string& content);

/// Runs `action` and puts the place in front of the text of any Failure it throws.
template <class Action>
auto at(const std::string& place, Action action) {
    try {
        return action();
    } catch (const Failure& failure) {
        throw Failure(failure.code, place + ": " + failure.what(), failure.returned);
    }
}

} // namespace TAVO::cli
