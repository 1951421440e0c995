#pragma once

#include <string>

namespace TAVO::cli {

/// Asks at the terminal whether something that is not easily undone shall be done; `given` is an answer
/// that came with the arguments. Call it before anything is sent.
/// @throws Failure (usage) when the answer is not yes, or when the standard input is no terminal.
void requireConsent(const std::string& question, bool given);

} // namespace TAVO::cli
