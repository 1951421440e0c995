#pragma once

#include <filesystem>
#include <map>
#include <string>

/// Reads a file of accounts: a line `USER:PASSWORD` for each, where the password is all that follows the
/// first colon. Empty lines and those that begin with # count for nothing.
/// @return passwords by user name.
/// @throws std::invalid_argument that names the file and the line, and shows nothing of it.
std::map<std::string, std::string> readAccounts(const std::filesystem::path& file);
