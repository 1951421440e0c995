#pragma once

#include <tavo/cli/option_list.h>

namespace CLI {
class App;
}

namespace TAVO::cli {

/// Adds the options to `app`, for parsing and help. Their targets must outlive the parsing.
void addOptions(CLI::App& app, const OptionList& options);

} // namespace TAVO::cli
