#pragma once

#include <string>

#include <tavo/cli/command.h>
#include <tavo/cli/session.h>

namespace TAVO::cli {

/// What the arguments ask for.
struct Program {
    ConnectionOptions connection;
    bool json = false;
    /// The help text that was asked for; there is no action then.
    std::string help;
    /// Set by the command that was chosen.
    Action action;

    /// The options that stand before or after every command.
    void describe(OptionList& list);
};

} // namespace TAVO::cli
