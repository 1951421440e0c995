#pragma once

namespace TAVO::cli {

/// Runs the whole program. Returns the exit status.
int runTool(int argc, char** argv);

} // namespace TAVO::cli
