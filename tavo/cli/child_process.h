#pragma once

#include <exception>
#include <string>
#include <vector>

namespace TAVO::cli {

/// Ends the tool with this exit status, and without a word.
class EndWith : public std::exception {
public:
    explicit EndWith(int exitStatus)
        : status(exitStatus) {}
    const char* what() const noexcept override { return "ended"; }

    int status;
};

/// Runs a program with the tool's own input and output, and waits for its end. A signal to the tool goes to
/// the program too.
/// @param words its name, searched in $PATH, and its arguments.
/// @return its exit status; 128 and the signal's number if a signal ended it.
/// @throws Failure (usage) if it cannot be started; Interrupted once it has ended after a signal.
int runProgram(const std::vector<std::string>& words);

} // namespace TAVO::cli
