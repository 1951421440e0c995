#pragma once

#include <optional>
#include <string>

namespace TAVO::cli {

/// The password of `user`: the first line of `file` when one is named, else the environment variable
/// TAVO_PASSWORD, else what is typed at the terminal, unseen. Arguments of a program are visible to
/// everybody, so a password is never one.
///
/// The terminal's settings come back however the prompt ends, signals included. Call it while the process has
/// one thread.
/// @throws Failure (usage) when the file cannot be read or there is no terminal to ask at.
std::string findPassword(const std::optional<std::string>& file, const std::string& user);

} // namespace TAVO::cli
