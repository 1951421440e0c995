#pragma once

#include <memory>
#include <string>
#include <vector>

#include <tavo/cli/command.h>
#include <tavo/cli/object_choice.h>

/// Shared by the `i2c` subcommands.
namespace TAVO::cli {

std::shared_ptr<HWDebug::I2c_v1_0> chooseBus(Session& session, const ObjectOptions& options);

struct I2cTransferOptions : ObjectOptions {
    std::vector<std::string> words;
    bool yes = false;

    void describe(OptionList& list);
};

void transferMessages(Session& session, Output& output, const I2cTransferOptions& options);

} // namespace TAVO::cli
