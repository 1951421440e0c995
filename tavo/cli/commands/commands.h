#pragma once

#include <vector>

#include <tavo/cli/command.h>

/// The commands of each group, and those that stand alone.
namespace TAVO::cli {

std::vector<Command> infoCommands();
std::vector<Command> treeCommands();
std::vector<Command> callCommands();
std::vector<Command> batchCommands();
std::vector<Command> shellCommands();
std::vector<Command> relayCommands();
std::vector<Command> timeCommands();
std::vector<Command> firmwareCommands();
std::vector<Command> headerCommands();
std::vector<Command> jtagCommands();
std::vector<Command> hdtCommands();
std::vector<Command> gpuCommands();
std::vector<Command> i2cCommands();
std::vector<Command> postCommands();
std::vector<Command> romCommands();
std::vector<Command> serialCommands();
std::vector<Command> lcdCommands();
std::vector<Command> lockCommands();
std::vector<Command> shareCommands();
std::vector<Command> traceCommands();
std::vector<Command> helpCommands();
std::vector<Command> configCommands();
std::vector<Command> doctorCommands();
std::vector<Command> metricsCommands();
std::vector<Command> completionCommands();

} // namespace TAVO::cli
