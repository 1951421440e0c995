#include <tavo/cli/commands/commands.h>

#include <memory>
#include <string>
#include <vector>

#include <fmt/format.h>

#include <tavo/cli/batch_file.h>
#include <tavo/cli/files.h>

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

void runBatch(Session& session, Output& output, const std::string& file) {
    std::vector<Line> lines;
    for (const auto& line : parseBatch(file, readFile(file)))
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

void addBatch(CLI::App& tool, Program& program) {
    auto* command = tool.add_subcommand("batch", "Make the calls of a file in one exchange");
    const auto file = std::make_shared<std::string>();
    command->add_option("file", *file, "The file, - for the standard input")->required();
    command->footer(
        "One call in a line, as 'tavo call' takes it. Quotes keep words together; empty lines and\n"
        "what follows a # count for nothing. All lines are checked before the first call is made.");
    command->callback([&program, file] {
        program.action = [file](Session& session, Output& output) { runBatch(session, output, *file); };
    });
}

} // namespace TAVO::cli
