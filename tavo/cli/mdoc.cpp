#include <tavo/cli/mdoc.h>

#include <sstream>

namespace TAVO::cli {

namespace {

/// A bare - may be shown as another character than the one that a shell understands.
std::string escaped(std::string_view text) {
    std::string result;
    for (const char c : text)
        if (c == '\\')
            result += "\\e";
        else if (c == '-')
            result += "\\-";
        else
            result += c;
    return result;
}

/// What begins with one of these would be a request.
std::string guarded(const std::string& line) {
    return line.starts_with('.') || line.starts_with('\'') ? "\\&" + line : line;
}

} // namespace

void Mdoc::macro(std::string_view line) {
    page_ += '.';
    page_ += line;
    page_ += '\n';
}

void Mdoc::text(std::string_view text) {
    constexpr std::size_t width = 78;
    std::istringstream words{std::string(text)};
    std::string line;
    const auto finish = [&] {
        if (!line.empty())
            page_ += guarded(line) + '\n';
        line.clear();
    };
    for (std::string word; words >> word;) {
        const auto shown = escaped(word);
        if (!line.empty() && line.size() + 1 + shown.size() > width)
            finish();
        line += (line.empty() ? "" : " ") + shown;
        // The formatter knows the end of a sentence by the end of a line.
        if (word.ends_with('.') || word.ends_with('?'))
            finish();
    }
    finish();
}

void Mdoc::literal(const std::vector<std::string>& lines) {
    macro("Bd -literal -offset indent");
    for (const auto& line : lines)
        page_ += guarded(escaped(line)) + '\n';
    macro("Ed");
}

std::string Mdoc::argument(std::string_view text) {
    std::string quoted = "\"\\&";
    for (const char c : escaped(text))
        if (c == '"')
            quoted += "\\(dq";
        else
            quoted += c;
    return quoted + '"';
}

} // namespace TAVO::cli
