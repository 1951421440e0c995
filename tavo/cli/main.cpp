#include <tavo/cli/tool.h>

int main(int argc, char** argv) { return TAVO::cli::runTool(argc, argv); }
