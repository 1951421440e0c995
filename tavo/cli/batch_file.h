#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include <tavo/cli/prepared_call.h>

namespace TAVO::cli {

/// A line of a batch file that is a call.
struct BatchLine {
    /// "FILE:NUMBER", for messages.
    std::string place;
    /// Counted from 1.
    std::size_t number = 0;
    CallWords words;
};

/// The calls of a batch file; empty lines and comments are left out.
/// @param file what the file is called in messages.
/// @throws Failure (usage) that begins with the place.
std::vector<BatchLine> parseBatch(const std::string& file, const std::string& content);

/// What `action` throws as a Failure, with the place before its text.
template <class Action>
auto at(const std::string& place, Action action) {
    try {
        return action();
    } catch (const Failure& failure) {
        throw Failure(failure.code, place + ": " + failure.what());
    }
}

} // namespace TAVO::cli
