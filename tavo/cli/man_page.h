#pragma once

#include <string>
#include <vector>

/// The manual pages of the tool, made from the list of commands.
namespace TAVO::cli {

struct ManPage {
    /// "tavo" or "tavo-relay"; all are in section 1.
    std::string name;
    /// In the mdoc language.
    std::string text;
};

/// The page of the tool, then one for each group, and for each command that belongs to none.
/// @param date of the pages, as "2024-05-06".
/// @throws std::invalid_argument if that is no date.
std::vector<ManPage> manPages(const std::string& date);

/// Shows the manual page that tells of this group or command, if it is installed and there is a program to
/// show it with, and waits until the user has read it.
/// @param path without a blank.
/// @return false if it was not shown.
bool showManPage(const std::string& path);

} // namespace TAVO::cli
