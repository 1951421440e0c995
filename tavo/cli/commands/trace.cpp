#include <cerrno>
#include <chrono>
#include <fstream>
#include <optional>
#include <string>
#include <system_error>

#include <fmt/format.h>

#include <tavo/cli/commands/commands.h>
#include <tavo/cli/failure.h>
#include <tavo/cli/files.h>
#include <tavo/cli/output.h>
#include <tavo/cli/session.h>
#include <tavo/cli/trace_report.h>
#include <tavo/trace/capture.h>

namespace TAVO::cli {

namespace {

struct TraceOptions {
    std::string file;
    std::optional<std::string> names;
    bool stats = false;

    void describe(OptionList& list) {
        list.add("file", file, "A pcapng file, of --trace, dumpcap or Wireshark", {.kind = ValueKind::file});
        list.add("--names", names,
                 "What 'tavo --json tree --methods' printed, for a capture that begins after the opening",
                 {.kind = ValueKind::file});
        list.add("--stats", stats, "Show a table of the times by method instead");
    }
};

trace::Names namesOf(const std::optional<std::string>& path) {
    trace::Names names;
    if (!path)
        return names;
    try {
        names.load(readFile(*path));
    } catch (const std::runtime_error& error) {
        if (dynamic_cast<const Failure*>(&error))
            throw;
        throw Failure(ExitCode::usage, fmt::format("'{}' {}", *path, error.what()));
    }
    return names;
}

void showTrace(const ConnectionOptions&, Output& output, const TraceOptions& options) {
    // What is kept of a block, to be shown.
    constexpr std::size_t mostKept = 4096;
    registerObjects();
    CallTimes times;
    std::optional<std::chrono::nanoseconds> start;
    trace::Capture capture(namesOf(options.names), mostKept,
                           [&](const trace::Exchange& exchange, const trace::Names& names) {
                               if (!start)
                                   start = exchange.begin;
                               if (options.stats)
                                   times.add(exchange, names);
                               else
                                   showExchange(output, exchange, names, *start);
                           });
    std::ifstream in(options.file, std::ios::binary);
    if (!in)
        throw Failure(ExitCode::usage, fmt::format("cannot read '{}': {}", options.file,
                                                   std::generic_category().message(errno)));
    try {
        capture.read(in);
    } catch (const trace::FormatError& error) {
        throw Failure(ExitCode::usage, fmt::format("cannot read '{}': {}", options.file, error.what()));
    }
    for (const auto& problem : capture.problems())
        output.warn(fmt::format("'{}': {}", options.file, problem));
    if (options.stats)
        times.show(output);
}

} // namespace

std::vector<Command> traceCommands() {
    return {command("trace show", "Show the calls in a trace, with their results and times", showTrace)};
}

} // namespace TAVO::cli
