#pragma once

#include <string>

#include <tavo/cli/command.h>
#include <tavo/cli/output.h>
#include <tavo/cli/session.h>

/// Shared by the `rom` subcommands.
namespace TAVO::cli {

struct RomServeOptions : ObjectOptions {
    std::string address;
    std::string chip;
    bool enable = false;
    bool once = false;

    void describe(OptionList& list);
};

void serveRom(Session& session, Output& output, const RomServeOptions& options);

} // namespace TAVO::cli
