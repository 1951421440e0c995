#pragma once

#include <filesystem>
#include <map>
#include <string>

/// Reads a file of accounts, one `USER:PASSWORD` per line. The password is everything after the first colon.
/// Skips empty lines and lines that start with #.
/// @return passwords by user name.
/// @throws std::invalid_argument that names the file and the line number, without quoting the line.
std::map<std::string, std::string> readAccounts(const std::filesystem::path& file);
