#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include <tavo/cli/secret.h>

namespace TAVO::cli {

/// Takes the value of the environment variable TAVO_PASSWORD and removes it, so neither this process nor its
/// children have it any more. Call it while the process has one thread.
std::optional<Secret> takePasswordOfEnvironment();

/// Where to look for a password.
struct PasswordSources {
    /// A file with the password in its first line; "-" is standard input.
    std::optional<std::string> file;
    const std::optional<Secret>& environment;
    /// Refuses a file that others may access.
    bool strict = false;
};

/// What keeps a file from being a good password file.
struct PasswordFileProblem {
    /// Empty if nothing does.
    std::string text;
    /// Whether it cannot be used at all.
    bool isFatal = false;
};

PasswordFileProblem problemOfPasswordFile(const std::string& path);

/// The password of `user`: from the file if one is named, else from the environment, else typed at the
/// terminal without echo. Never from an argument: everybody can see those.
///
/// Restores the terminal's settings however the prompt ends, signals included. Call it while the process has
/// one thread.
/// @param warn gets a message if others may access the file.
/// @throws Failure (usage) if the file cannot be read, or is refused, or there is no terminal to ask at.
Secret findPassword(const PasswordSources& sources, const std::string& user,
                    const std::function<void(std::string_view)>& warn);

} // namespace TAVO::cli
