#pragma once

#include <string>
#include <vector>

#include <tavo/cli/option_list.h>

/// What help texts and manual pages say of an option.
namespace TAVO::cli {

/// "-y" and "--yes"; of an argument its bare name.
std::vector<std::string> namesOf(const Option& option);

/// What the value is called: "FILE", "on|off", "NUMBER". Empty for a flag.
std::string valueText(const Option& option);

/// The numbers that an option takes, and its default: " (0 to 7, default 1)", or nothing.
std::string limitsText(const Option& option);

/// An argument in a line of usage: "NAME" or "[VALUES ...]".
std::string usageOf(const Option& argument);

} // namespace TAVO::cli
