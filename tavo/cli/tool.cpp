#include <tavo/cli/tool.h>

#include <algorithm>
#include <clocale>
#include <csignal>
#include <string_view>

#include <sys/resource.h>

#include <tavo/cli/arguments.h>
#include <tavo/cli/interrupt.h>

namespace TAVO::cli {

namespace {

bool wantsJson(int argc, char** argv) {
    // Also where the arguments are too wrong to be parsed, their failure is told as JSON.
    return std::any_of(argv, argv + argc, [](std::string_view word) { return word == "--json"; });
}

void execute(int argc, char** argv, Output& output) {
    const auto program = parseArguments(argc, argv);
    output.write(program.help);
    if (program.action) {
        Session session(program.connection, [&output](std::string_view warning) { output.warn(warning); });
        program.action(session, output);
    }
}

/// What a signal such as SIGQUIT leaves of a process would hold the password.
void withoutCoreFile() {
    const rlimit none{0, 0};
    static_cast<void>(::setrlimit(RLIMIT_CORE, &none));
}

/// The exit status of an action, whose failure is told.
template <class Action>
ExitCode attempt(Output& output, Action action) {
    try {
        action();
        return ExitCode::done;
    } catch (const Interrupted&) {
        throw;
    } catch (const std::exception& exception) {
        const auto report = describeFailure(exception);
        output.tell(report);
        return report.code;
    }
}

} // namespace

int runTool(int argc, char** argv) {
    holdStandardStreams();
    std::setlocale(LC_CTYPE, ""); // NOLINT(concurrency-mt-unsafe): no other thread has been started
    std::signal(SIGPIPE, SIG_IGN);
    withoutCoreFile();
    Output output(wantsJson(argc, argv));
    try {
        const auto outcome = attempt(output, [&] { execute(argc, argv, output); });
        const auto written = outcome == ExitCode::done ? attempt(output, [&] { output.finish(); }) : outcome;
        return static_cast<int>(written);
    } catch (const Interrupted& interrupted) {
        dieOf(interrupted);
        return static_cast<int>(ExitCode::protocol);
    }
}

} // namespace TAVO::cli
