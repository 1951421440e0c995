#pragma once

#include <set>
#include <string>

#include <tavo/cli/command_list.h>

namespace tool_test {

/// The paths of all commands of the tool that talk to a device, such as "relay set"; but for those
/// that end only when they are told to.
inline std::set<std::string> commandNames() {
    const std::set<std::string> servers{"share", "jtag serve", "rom serve"};
    std::set<std::string> names;
    for (const auto& command : TAVO::cli::commandList())
        if (command.bind().run && !servers.contains(command.path))
            names.insert(command.path);
    return names;
}

} // namespace tool_test
