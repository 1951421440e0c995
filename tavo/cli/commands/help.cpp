#include <tavo/cli/commands/commands.h>

#include <string>
#include <vector>

#include <tavo/cli/help.h>
#include <tavo/cli/output.h>

namespace TAVO::cli {

namespace {

struct HelpOptions {
    std::vector<std::string> words;

    void describe(OptionList& list) {
        list.add("topic", words, "A command, a group of commands, or exit-status; default: the whole tool");
    }
};

void showHelp(const ConnectionOptions&, Output& output, const HelpOptions& options) {
    output.write(topicText(options.words));
}

} // namespace

std::vector<Command> helpCommands() { return {command("help", "Show the help of a command", showHelp)}; }

} // namespace TAVO::cli
