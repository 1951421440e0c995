#include <tavo/cli/command_list.h>

#include <algorithm>
#include <iterator>

#include <tavo/cli/command_examples.h>
#include <tavo/cli/commands/commands.h>

namespace TAVO::cli {

std::vector<Command> commandList() {
    std::vector<Command> all;
    for (auto* list : {infoCommands,   treeCommands,   callCommands,     batchCommands,      shellCommands,
                       relayCommands,  timeCommands,   firmwareCommands, headerCommands,     jtagCommands,
                       hdtCommands,    gpuCommands,    i2cCommands,      postCommands,       romCommands,
                       serialCommands, lcdCommands,    lockCommands,     shareCommands,      traceCommands,
                       configCommands, doctorCommands, metricsCommands,  completionCommands, helpCommands}) {
        auto some = list();
        all.insert(all.end(), std::make_move_iterator(some.begin()), std::make_move_iterator(some.end()));
    }
    for (auto& command : all)
        command.examples = examplesOf(command.path);
    return all;
}

std::vector<CommandGroup> commandGroups() {
    return {
        {"relay", "List and switch relays"},
        {"time", "Read and set the device's clock"},
        {"firmware", "Update the device's firmware"},
        {"header", "Show the debug headers", "Full name of the object; default: all that have headers"},
        {"jtag", "Examine JTAG chains and shift through them",
         "Full name of the jtag object; required if there are several"},
        {"hdt", "Show and drive a processor's debug signals",
         "Full name of the hdt object; required if there are several"},
        {"hdt snapshot", "The snapshots of DBRDY and of the DBREQ source"},
        {"hdt trigger", "The trigger lines"},
        {"gpu", "Use a graphics processor's debug connector",
         "Full name of the object; required if there are several"},
        {"i2c", "Find devices on an I2C bus, read and write their registers",
         "Full name of the bus; required if there are several"},
        {"post", "The POST codes of a booting board",
         "Full name of the receiver; required if there are several"},
        {"rom", "The memory that serves a board's boot ROM",
         "Full name of the ROM emulation; required if there are several"},
        {"lock", "Ask for, hold and give back the lock"},
        {"lcd", "The display of the device", "Full name of the display; required if there are several"},
        {"trace", "Show what --trace wrote"},
        {"config", "Examine the configuration file"},
    };
}

std::optional<Command> findCommand(const std::string& path) {
    for (auto& command : commandList())
        if (command.path == path)
            return std::move(command); // cppcheck-suppress returnStdMoveLocal ; it is a part of the list
    return std::nullopt;
}

std::optional<CommandGroup> findGroup(const std::string& path) {
    for (auto& group : commandGroups())
        if (group.path == path)
            return std::move(group); // cppcheck-suppress returnStdMoveLocal ; it is a part of the list
    return std::nullopt;
}

std::optional<CommandGroup> groupWithObject(std::string path) {
    for (; !path.empty(); path.resize(path.rfind(' ') == std::string::npos ? 0 : path.rfind(' ')))
        if (auto group = findGroup(path); group && !group->object.empty())
            return group;
    return std::nullopt;
}

std::vector<std::string> namesBelow(const std::string& path) {
    std::vector<std::string> names;
    const auto prefix = path.empty() ? path : path + ' ';
    for (const auto& command : commandList())
        if (command.path.starts_with(prefix) && !command.isHidden) {
            const auto name =
                command.path.substr(prefix.size(), command.path.find(' ', prefix.size()) - prefix.size());
            if (std::find(names.begin(), names.end(), name) == names.end())
                names.push_back(name);
        }
    return names;
}

} // namespace TAVO::cli
