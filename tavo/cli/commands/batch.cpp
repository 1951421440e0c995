#include <tavo/cli/commands/commands.h>

#include <memory>
#include <string>
#include <vector>

#include <tavo/cli/batch_file.h>
#include <tavo/cli/files.h>
#include <tavo/cli/output.h>

namespace TAVO::cli {

namespace {

struct Line : BatchLine {
    PreparedCall call;
};

void showResults(Output& output, const std::vector<Line>& lines) {
    const auto forResults = [&](const auto& show) {
        for (const auto& line : lines)
            if (line.call.method->isResultSet())
                show(line);
    };
    output.show(
        [&](JsonWriter& json) {
            json.array([&] {
                forResults([&](const Line& line) {
                    json.object([&] {
                        json.key("line").number(line.number);
                        writeResult(json, line.call);
                    });
                });
            });
        },
        [&](TextWriter& text) {
            forResults([&](const Line& line) {
                text.print("{}: ", line.number);
                writeResult(text, line.call);
            });
        });
}

void run(Session& session, const std::vector<Line>& lines) {
    std::vector<std::shared_ptr<Method>> methods;
    methods.reserve(lines.size());
    for (const auto& line : lines)
        methods.push_back(line.call.method);
    try {
        session.run(methods);
    } catch (const ExecutionError& error) {
        throw Failure(ExitCode::refused, lines.at(error.failedMethodIndex()).place + ": " + error.what());
    }
}

struct BatchOptions {
    std::string file;

    void describe(OptionList& list) {
        list.add("file", file, "The file; - for standard input", {.required = true, .kind = ValueKind::file});
    }
};

void runBatch(Session& session, Output& output, const BatchOptions& options) {
    std::vector<Line> lines;
    for (const auto& line : parseBatch(options.file, readFile(options.file)))
        lines.push_back({line, at(line.place, [&] { return prepareCall(session, line.words); })});
    try {
        if (!lines.empty())
            run(session, lines);
    } catch (const std::exception&) {
        showResults(output, lines);
        throw;
    }
    showResults(output, lines);
    for (const auto& line : lines)
        at(line.place, [&] { requireSuccess(*line.call.method); });
}

} // namespace

std::vector<Command> batchCommands() {
    return {command("batch", "Make the calls of a file in one exchange", runBatch,
                    "One call per line, as for 'tavo call'. Quotes keep words together; empty lines and\n"
                    "comments after # are ignored. All lines are checked before the first call is made.")};
}

} // namespace TAVO::cli
