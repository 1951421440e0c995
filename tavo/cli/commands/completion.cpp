#include <tavo/cli/commands/commands.h>

#include <string>
#include <vector>

#include <tavo/cli/completion_scripts.h>
#include <tavo/cli/line_completion.h>
#include <tavo/cli/output.h>

namespace TAVO::cli {

namespace {

struct CompletionOptions {
    std::string shell;

    void describe(OptionList& list) {
        list.add("shell", shell, "The shell",
                 {.required = true, .choices = {std::begin(completedShells), std::end(completedShells)}});
    }
};

void printScript(const ConnectionOptions&, Output& output, const CompletionOptions& options) {
    output.write(completionScript(options.shell).text);
}

struct WordsOptions {
    bool quoted = false;
    std::vector<std::string> words;

    void describe(OptionList& list) {
        list.add("--quoted", quoted, "The words have the quotes of a shell");
        list.add("words", words, "The words behind the tool's name, up to the cursor");
    }
};

void completeWords(const ConnectionOptions&, Output& output, const WordsOptions& options) {
    output.write(completedLine(options.words, options.quoted));
}

} // namespace

std::vector<Command> completionCommands() {
    auto words = command("complete-words", "Tell a shell how a line may go on", completeWords);
    words.isHidden = true;
    return {
        command("completion", "Print what makes a shell complete the lines of the tool", printScript),
        std::move(words),
    };
}

} // namespace TAVO::cli
