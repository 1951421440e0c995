#include <tavo/cli/values/words.h>

#include <stdexcept>

namespace TAVO::cli {

namespace {

bool isBlank(char c) { return c == ' ' || c == '\t' || c == '\r'; }

/// Moves the quoted text at the front of `rest` to `word`.
void takeQuoted(std::string_view& rest, std::string& word) {
    const char quote = rest.front();
    rest.remove_prefix(1);
    while (!rest.empty() && rest.front() != quote) {
        const bool escaped = quote == '"' && rest.size() > 1 && rest.front() == '\\' &&
                             std::string_view("\"\\$`").find(rest[1]) != std::string_view::npos;
        if (escaped)
            rest.remove_prefix(1);
        word += rest.front();
        rest.remove_prefix(1);
    }
    if (rest.empty())
        throw std::invalid_argument(std::string("a quote ") + quote + " is not closed");
    rest.remove_prefix(1);
}

std::string takeWord(std::string_view& rest) {
    std::string word;
    while (!rest.empty() && !isBlank(rest.front())) {
        if (rest.front() == '"' || rest.front() == '\'') {
            takeQuoted(rest, word);
            continue;
        }
        if (rest.front() == '\\') {
            if (rest.size() == 1)
                throw std::invalid_argument("a backslash ends the line");
            rest.remove_prefix(1);
        }
        word += rest.front();
        rest.remove_prefix(1);
    }
    return word;
}

} // namespace

std::vector<std::string> splitWords(std::string_view line) {
    std::vector<std::string> words;
    for (;;) {
        while (!line.empty() && isBlank(line.front()))
            line.remove_prefix(1);
        if (line.empty() || line.front() == '#')
            return words;
        words.push_back(takeWord(line));
    }
}

} // namespace TAVO::cli
