#pragma once

#include <vector>

#include <tavo/cli/command.h>

/// All that the tool can do, told once: the parser and the help are made from it.
namespace TAVO::cli {

/// All commands in the order of the help.
std::vector<Command> commandList();

/// The groups of their paths.
std::vector<CommandGroup> commandGroups();

} // namespace TAVO::cli
