#pragma once

#include <optional>
#include <string>

#include <tavo/cli/command.h>
#include <tavo/cli/session.h>

namespace TAVO::cli {

/// What the arguments ask for.
struct Program {
    ConnectionOptions connection;
    bool json = false;
    /// Where to write what passes between tool and device.
    std::optional<std::string> traceFile;
    bool traceSecrets = false;
    /// The requested help text, in place of an action.
    std::string help;
    /// Set by the chosen command.
    Action action;
    /// Set instead by a command that needs no device.
    LocalAction localAction;
    /// The path of such a command.
    std::string localPath;

    /// Lists the options that every command takes.
    void describe(OptionList& list);
};

} // namespace TAVO::cli
