#include <tavo/cli/batch_file.h>

#include <sstream>

#include <fmt/format.h>

#include <tavo/cli/user_input.h>
#include <tavo/cli/values/words.h>

namespace TAVO::cli {

std::vector<BatchLine> parseBatch(const std::string& file, const std::string& content) {
    std::vector<BatchLine> lines;
    std::istringstream in(content);
    std::string text;
    for (std::size_t number = 1; std::getline(in, text); ++number) {
        const auto place = fmt::format("{}:{}", file, number);
        at(place, [&] {
            if (const auto words = parseInput([&] { return splitWords(text); }); !words.empty())
                lines.push_back({place, number, parseCall(words)});
        });
    }
    return lines;
}

} // namespace TAVO::cli
