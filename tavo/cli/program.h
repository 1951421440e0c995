#pragma once

#include <functional>
#include <string>

#include <tavo/cli/output.h>
#include <tavo/cli/session.h>

namespace TAVO::cli {

/// What the arguments ask for.
struct Program {
    ConnectionOptions connection;
    bool json = false;
    /// The help text that was asked for; there is no action then.
    std::string help;
    /// Set by the subcommand that was chosen.
    std::function<void(Session&, Output&)> action;
};

} // namespace TAVO::cli
