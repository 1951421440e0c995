#pragma once

#include <optional>
#include <string>
#include <vector>

#include <tavo/cli/command.h>

/// Everything the tool can do, listed once. Parser and help follow from this list.
namespace TAVO::cli {

/// All commands, in the order of the help.
std::vector<Command> commandList();

/// The groups they belong to.
std::vector<CommandGroup> commandGroups();

/// Empty if there is none with this path.
std::optional<Command> findCommand(const std::string& path);
std::optional<CommandGroup> findGroup(const std::string& path);

/// The group that takes the --object of a command or group, itself included.
std::optional<CommandGroup> groupWithObject(std::string path);

/// The names of the commands and groups directly below a group, in the order of the list; at the top if the
/// path is empty. None below a command. Without those that are hidden.
std::vector<std::string> namesBelow(const std::string& path);

} // namespace TAVO::cli
