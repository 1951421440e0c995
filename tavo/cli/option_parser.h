#pragma once

#include <tavo/cli/option_list.h>

namespace CLI {
class App;
}

namespace TAVO::cli {

/// Lets `app` parse the options, and tell them in its help. Their targets must outlive the parsing.
void addOptions(CLI::App& app, const OptionList& options);

} // namespace TAVO::cli
