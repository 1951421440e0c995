#pragma once

#include <CLI/CLI.hpp>

#include <tavo/cli/program.h>

/// One operation for each subcommand: describes it to the parser and, when it is chosen, sets what the
/// program does. Both arguments must outlive the parsing.
namespace TAVO::cli {

void addInfo(CLI::App& tool, Program& program);
void addTree(CLI::App& tool, Program& program);
void addCall(CLI::App& tool, Program& program);
void addBatch(CLI::App& tool, Program& program);
void addRelay(CLI::App& tool, Program& program);
void addTime(CLI::App& tool, Program& program);
void addFirmware(CLI::App& tool, Program& program);

} // namespace TAVO::cli
