#include <tavo/cli/commands/commands.h>

#include <csignal>
#include <exception>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <fmt/format.h>
#include <unistd.h>

#include <tavo/cli/arguments.h>
#include <tavo/cli/completed_names.h>
#include <tavo/cli/files.h>
#include <tavo/cli/interrupt.h>
#include <tavo/cli/line_editor.h>
#include <tavo/cli/output.h>
#include <tavo/cli/user_input.h>
#include <tavo/cli/values/words.h>

namespace TAVO::cli {

namespace {

struct ShellOptions {
    std::string file = "-";

    void describe(OptionList& list) {
        list.add("file", file, "A script; default: standard input", {.kind = ValueKind::file});
    }
};

/// Runs lines on one device.
class Shell {
public:
    Shell(Session& session, Output& output, const ShellOptions& options)
        : session_(session)
        , output_(output)
        , file_(options.file)
        , interactive_(options.file == "-" && ::isatty(STDIN_FILENO) == 1) {
        if (options.file != "-")
            source_ = std::make_unique<TextLines>(readFile(options.file));
        else if (!interactive_)
            source_ = std::make_unique<InputLines>();
        output_.useLines();
    }

    void run() {
        session_.device();
        if (interactive_)
            source_ = std::make_unique<LineEditor>(
                "tavo> ", [this](const std::vector<std::string>& words, const std::string& begun) {
                    const auto names = [this](NameKind kind, const std::string& wanted) {
                        return completedNames(kind, wanted, [this] { return session_.objects(); });
                    };
                    return completionsFor(words, begun, names);
                });
        while (!ended_) {
            auto line = source_->next();
            if (!line)
                return;
            ++number_;
            attempt(std::move(*line));
        }
    }

private:
    void attempt(std::string line) {
        const auto start = line.find_first_not_of(" \t");
        const bool mayFail = start != std::string::npos && line[start] == '-';
        if (mayFail)
            line.erase(0, start + 1);
        try {
            execute(line);
            output_.finish();
        } catch (const Interrupted& interrupted) {
            if (!interactive_ || interrupted.signal != SIGINT)
                throw;
            InterruptWatch::forget();
        } catch (const std::exception& exception) {
            auto report = describeFailure(exception);
            if (!interactive_)
                report.message = fmt::format("{}:{}: {}", file_, number_, report.message);
            if (!interactive_ && !mayFail)
                throw ReportedFailure(std::move(report));
            output_.finish();
            output_.tell(report); // cppcheck-suppress accessMoved ; what is moved has been thrown
        }
    }

    void execute(const std::string& line) {
        const auto words = parseInput([&] { return splitWords(line); });
        if (words.empty())
            return;
        if (words.front() == "exit" || words.front() == "quit") {
            ended_ = true;
            return;
        }
        if (words.front() == "shell")
            throw Failure(ExitCode::usage, "a shell runs no shell");
        const auto program = parseLine(words);
        output_.write(program.help);
        if (program.localAction)
            program.localAction({}, output_);
        else if (program.action)
            program.action(session_, output_);
    }

    Session& session_;
    Output& output_;
    std::string file_;
    bool interactive_;
    std::unique_ptr<LineSource> source_;
    std::size_t number_ = 0;
    bool ended_ = false;
};

void runShell(Session& session, Output& output, const ShellOptions& options) {
    Shell(session, output, options).run();
}

} // namespace

std::vector<Command> shellCommands() {
    return {command(
        "shell", "Run commands line by line on one open device", runShell,
        "A line is a command without 'tavo' and without options of the connection; 'exit' or the end\n"
        "of input ends the shell. Quotes and # are as in a POSIX shell. A failure ends a script unless\n"
        "the line begins with -. With --json each result is a line.")};
}

} // namespace TAVO::cli
