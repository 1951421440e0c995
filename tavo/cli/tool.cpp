#include <tavo/cli/tool.h>

#include <algorithm>
#include <clocale>
#include <csignal>
#include <string_view>

#include <fmt/format.h>
#include <sys/resource.h>

#include <tavo/cli/arguments.h>
#include <tavo/cli/child_process.h>
#include <tavo/cli/config/effective.h>
#include <tavo/cli/interrupt.h>
#include <tavo/cli/output.h>
#include <tavo/cli/session.h>
#include <tavo/cli/trace_file.h>

namespace TAVO::cli {

namespace {

/// Guesses from arguments that do not parse whether to report the failure as JSON.
bool seemsToWantJson(int argc, char** argv) {
    auto** const end = std::find(argv, argv + argc, std::string_view("--"));
    return std::find(argv, end, std::string_view("--json")) != end;
}

void execute(Program& program, Output& output) {
    output.write(program.help);
    // The doctor opens its device itself.
    if (program.traceFile && program.localAction && program.localPath != "doctor")
        throw Failure(ExitCode::usage,
                      fmt::format("--trace has nothing to write: '{}' asks no device", program.localPath));
    if (program.traceFile)
        program.connection.trace = std::make_shared<TraceFile>(*program.traceFile, program.traceSecrets);
    const auto warn = [&output](std::string_view warning) { output.warn(warning); };
    if (program.localAction) {
        program.localAction(program.connection, output);
    } else if (program.action) {
        Session session(connectionFor(program.connection, warn), warn);
        program.action(session, output);
    }
    if (program.connection.trace)
        program.connection.trace->complete();
}

/// A core file would contain the password.
void withoutCoreFile() {
    const rlimit none{0, 0};
    static_cast<void>(::setrlimit(RLIMIT_CORE, &none));
}

/// Runs the action and reports its failure. Returns the exit status.
template <class Action>
ExitCode attempt(Output& output, Action action) {
    try {
        action();
        return ExitCode::done;
    } catch (const Interrupted&) {
        throw;
    } catch (const NobodyReads&) {
        throw;
    } catch (const EndWith& end) {
        return static_cast<ExitCode>(end.status);
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
    const bool diesOfPipes = std::signal(SIGPIPE, SIG_IGN) != SIG_IGN;
    withoutCoreFile();
    try {
        Program program;
        Output early(seemsToWantJson(argc, argv), diesOfPipes);
        const auto parsed = attempt(early, [&] { program = parseArguments(argc, argv); });
        if (parsed != ExitCode::done)
            return static_cast<int>(parsed);
        Output output(program.json, diesOfPipes);
        const auto outcome = attempt(output, [&] { execute(program, output); });
        const auto written = outcome == ExitCode::done ? attempt(output, [&] { output.finish(); }) : outcome;
        return static_cast<int>(written);
    } catch (const Interrupted& interrupted) {
        dieOf(interrupted.signal);
        return static_cast<int>(ExitCode::protocol);
    } catch (const NobodyReads&) {
        dieOf(SIGPIPE);
        return static_cast<int>(ExitCode::protocol);
    }
}

} // namespace TAVO::cli
