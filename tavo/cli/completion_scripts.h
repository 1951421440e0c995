#pragma once

#include <string_view>

namespace TAVO::cli {

/// What makes a shell complete the lines of the tool: it asks the tool itself.
struct CompletionScript {
    std::string_view shell;
    /// Under which the shell looks for it.
    std::string_view fileName;
    std::string_view text;
};

inline constexpr std::string_view completedShells[] = {"bash", "zsh", "fish"};

/// @param shell one of `completedShells`.
CompletionScript completionScript(std::string_view shell);

} // namespace TAVO::cli
