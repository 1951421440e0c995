#include <tavo/cli/batch_file.h>

#include <sstream>
#include <stdexcept>

#include <fmt/format.h>

#include <tavo/cli/words.h>

namespace TAVO::cli {

namespace {

std::vector<std::string> wordsOf(const std::string& line) {
    try {
        return splitWords(line);
    } catch (const std::invalid_argument& error) {
        throw Failure(ExitCode::usage, error.what());
    }
}

} // namespace

std::vector<BatchLine> parseBatch(const std::string& file, const std::string& content) {
    std::vector<BatchLine> lines;
    std::istringstream in(content);
    std::string text;
    for (std::size_t number = 1; std::getline(in, text); ++number) {
        const auto place = fmt::format("{}:{}", file, number);
        at(place, [&] {
            if (const auto words = wordsOf(text); !words.empty())
                lines.push_back({place, number, parseCall(words)});
        });
    }
    return lines;
}

} // namespace TAVO::cli
