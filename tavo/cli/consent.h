#pragma once

#include <string>

namespace TAVO::cli {

/// Asks at the terminal before something that is hard to undo. `given` is true if the arguments already said
/// yes. Call it before sending anything.
/// @throws Failure (usage) if the answer is not yes or standard input is not a terminal.
void requireConsent(const std::string& question, bool given);

} // namespace TAVO::cli
