#pragma once

#include <vector>

#include <tavo/cli/command.h>

/// Everything the tool can do, listed once. Parser and help follow from this list.
namespace TAVO::cli {

/// All commands, in the order of the help.
std::vector<Command> commandList();

/// The groups they belong to.
std::vector<CommandGroup> commandGroups();

} // namespace TAVO::cli
