#pragma once

#include <string>

#include <tavo/cli/command.h>
#include <tavo/cli/session.h>

namespace TAVO::cli {

/// What the arguments ask for.
struct Program {
    ConnectionOptions connection;
    bool json = false;
    /// The requested help text, in place of an action.
    std::string help;
    /// Set by the chosen command.
    Action action;
    /// Set instead by a command that needs no device.
    LocalAction localAction;

    /// Lists the options that every command takes.
    void describe(OptionList& list);
};

} // namespace TAVO::cli
