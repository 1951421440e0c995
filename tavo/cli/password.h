#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include <tavo/cli/secret.h>

namespace TAVO::cli {

/// The value of the environment variable TAVO_PASSWORD, which neither this process nor a child of it has any
/// more then. Call it while the process has one thread.
std::optional<Secret> takePasswordOfEnvironment();

/// Where a password is looked for.
struct PasswordSources {
    /// A file whose first line it is; - is the standard input.
    std::optional<std::string> file;
    const std::optional<Secret>& environment;
};

/// The password of `user`: of the file when one is named, else of the environment, else what is typed at the
/// terminal, unseen. Arguments of a program are visible to everybody, so a password is never one.
///
/// The terminal's settings come back however the prompt ends, signals included. Call it while the process has
/// one thread.
/// @param warn is told when others may read the file.
/// @throws Failure (usage) when the file cannot be read or there is no terminal to ask at.
Secret findPassword(const PasswordSources& sources, const std::string& user,
                    const std::function<void(std::string_view)>& warn);

} // namespace TAVO::cli
