#include <tavo/cli/command_list.h>

#include <iterator>

#include <tavo/cli/commands/commands.h>

namespace TAVO::cli {

std::vector<Command> commandList() {
    std::vector<Command> all;
    for (auto* list : {infoCommands, treeCommands, callCommands, batchCommands, relayCommands, timeCommands,
                       firmwareCommands, headerCommands, jtagCommands, hdtCommands, gpuCommands, i2cCommands,
                       postCommands, romCommands, serialCommands, lcdCommands}) {
        auto some = list();
        all.insert(all.end(), std::make_move_iterator(some.begin()), std::make_move_iterator(some.end()));
    }
    return all;
}

std::vector<CommandGroup> commandGroups() {
    return {
        {"relay", "Look at relays and switch them"},
        {"time", "Read and set the device's clock"},
        {"firmware", "Update the device's firmware"},
        {"header", "Look at the debug headers",
         "Full name of the object whose headers are meant, all unless given"},
        {"jtag", "Look at JTAG chains and shift through them",
         "Full name of the jtag object; needed when there are several"},
        {"hdt", "Look at a processor's debug signals and drive them",
         "Full name of the hdt object; needed when there are several"},
        {"hdt snapshot", "The snapshots of DBRDY and of the source of DBREQ"},
        {"hdt trigger", "The trigger lines"},
        {"gpu", "Use a graphics processor's debug connector",
         "Full name of the object; needed when there are several"},
        {"i2c", "Look for devices on an I2C bus, read and write their registers",
         "Full name of the bus; not needed where there is only one"},
        {"post", "The POST codes of a booting board",
         "Full name of the receiver; not needed where there is only one"},
        {"rom", "The memory that serves a board's boot ROM",
         "Full name of the ROM emulation; not needed where there is only one"},
        {"lcd", "The display of the device", "Full name of the display; not needed where there is only one"},
    };
}

} // namespace TAVO::cli
