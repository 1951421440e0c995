#include <tavo/cli/commands/commands.h>

#include <algorithm>
#include <string>
#include <vector>

#include <unistd.h>

#include <tavo/cli/command_list.h>
#include <tavo/cli/help.h>
#include <tavo/cli/man_page.h>
#include <tavo/cli/output.h>

namespace TAVO::cli {

namespace {

struct HelpOptions {
    std::vector<std::string> words;

    void describe(OptionList& list) {
        list.add("topic", words, "A command, a group of commands, or exit-status; default: the whole tool",
                 {.nameKind = NameKind::command});
    }
};

bool isCommandOrGroup(const std::string& name) {
    const auto names = namesBelow("");
    return std::find(names.begin(), names.end(), name) != names.end();
}

void showHelp(const ConnectionOptions&, Output& output, const HelpOptions& options) {
    const auto text = topicText(options.words);
    const bool hasPage = options.words.size() == 1 && isCommandOrGroup(options.words.front());
    if (!output.isJson() && hasPage && ::isatty(STDOUT_FILENO) == 1 && showManPage(options.words.front()))
        return;
    output.write(text);
}

} // namespace

std::vector<Command> helpCommands() { return {command("help", "Show the help of a command", showHelp)}; }

} // namespace TAVO::cli
