#pragma once

namespace TAVO::cli {

/// The whole program, from its arguments to its exit status.
int runTool(int argc, char** argv);

} // namespace TAVO::cli
