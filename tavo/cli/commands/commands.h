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
void addHeader(CLI::App& tool, Program& program);
void addJtag(CLI::App& tool, Program& program);
void addHdt(CLI::App& tool, Program& program);
void addGpu(CLI::App& tool, Program& program);
void addI2c(CLI::App& tool, Program& program);
void addPost(CLI::App& tool, Program& program);
void addRom(CLI::App& tool, Program& program);
void addSerial(CLI::App& tool, Program& program);
void addLcd(CLI::App& tool, Program& program);

} // namespace TAVO::cli
