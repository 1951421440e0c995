#include <tavo/cli/commands/commands.h>

#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include <fmt/format.h>

#include <tavo/cli/files.h>
#include <tavo/cli/prepared_call.h>
#include <tavo/cli/words.h>

namespace TAVO::cli {

namespace {

struct Line {
    std::string place;
    std::size_t number = 0;
    CallWords words;
    PreparedCall call;
};

/// What `action` throws, with the place in the file before it.
template <class Action>
auto at(const std::string& place, Action action) {
    try {
        return action();
    } catch (const Failure& failure) {
        throw Failure(failure.code, place + ": " + failure.what());
    } catch (const std::invalid_argument& error) {
        throw Failure(ExitCode::usage, place + ": " + error.what());
    }
}

std::vector<Line> readLines(const std::string& file) {
    std::vector<Line> lines;
    std::istringstream in(readFile(file));
    std::string text;
    for (std::size_t number = 1; std::getline(in, text); ++number) {
        const auto place = fmt::format("{}:{}", file, number);
        const auto words = at(place, [&] { return splitWords(text); });
        if (!words.empty())
            lines.push_back({place, number, at(place, [&] { return parseCall(words); }), {}});
    }
    return lines;
}

void showResults(Output& output, const std::vector<Line>& lines) {
    auto documents = nlohmann::json::array();
    std::string text;
    for (const auto& line : lines) {
        if (!line.call.method->isResultSet())
            continue;
        auto document = resultDocument(line.call);
        document["line"] = line.number;
        documents.push_back(std::move(document));
        text += fmt::format("{}: {}", line.number, resultText(line.call));
    }
    output.show(documents, text);
}

void run(Session& session, const std::vector<Line>& lines) {
    std::vector<std::shared_ptr<Method>> methods;
    for (const auto& line : lines)
        methods.push_back(line.call.method);
    try {
        session.run(methods);
    } catch (const ExecutionError& error) {
        throw Failure(ExitCode::refused, lines.at(error.failedMethodIndex()).place + ": " + error.what());
    }
}

void runBatch(Session& session, Output& output, const std::string& file) {
    auto lines = readLines(file);
    for (auto& line : lines)
        line.call = at(line.place, [&] { return prepareCall(session, line.words); });
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
