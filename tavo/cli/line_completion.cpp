#include <tavo/cli/line_completion.h>

#include <chrono>
#include <exception>
#include <map>
#include <optional>

#include <tavo/cli/completed_names.h>
#include <tavo/cli/completion.h>
#include <tavo/cli/config/effective.h>
#include <tavo/cli/share/share_socket.h>
#include <tavo/cli/values/visible_text.h>
#include <tavo/cli/values/whole_number.h>
#include <tavo/cli/values/words.h>

namespace TAVO::cli {

namespace {

/// For the share; a user waits no longer than 100 ms for all of it.
constexpr std::chrono::milliseconds longestWait(60);

/// A word without its quotes, of which the last may be open.
std::string unquoted(const std::string& word) {
    for (const auto* end : {"", "\"", "'"})
        try {
            const auto words = splitWords(word + end);
            return words.empty() ? "" : words.front();
        } catch (const std::invalid_argument&) {
            continue;
        }
    return word;
}

/// The device of the line, as far as it tells.
ConnectionOptions connectionIn(const GivenOptions& given) {
    const auto value = [&](const char* name) -> std::optional<std::string> {
        const auto found = given.find(name);
        return found == given.end() ? std::nullopt : std::optional(found->second);
    };
    ConnectionOptions connection;
    connection.host = value("--host").value_or("");
    if (const auto port = value("--port"))
        connection.port = static_cast<std::uint16_t>(parseWholeNumber(*port, 1, 65535));
    connection.user = value("--user");
    connection.via = value("--via");
    connection.secure = given.contains("--secure");
    connection.notSecure = given.contains("--no-secure");
    connection.simulated = given.contains("--sim");
    return connection;
}

std::string sharePathFor(const GivenOptions& given) {
    const auto wanted = connectionIn(given);
    if (wanted.simulated)
        return "";
    const auto connection = effectiveOptions(wanted, readConfig()).connection;
    if (connection.host.empty() || !connection.user)
        return "";
    return share_socket::pathFor(connection.host, connection.port.value(), *connection.user,
                                 connection.via.value_or(""));
}

} // namespace

std::string completedLine(std::vector<std::string> words, bool quoted) {
    if (words.empty())
        words.emplace_back();
    if (quoted)
        for (auto& word : words)
            word = unquoted(word);
    const auto begun = words.back();
    words.pop_back();
    const auto names = [&](NameKind kind, const std::string& wanted) -> std::vector<std::string> {
        try {
            return completedNames(kind, wanted, [&] {
                return objectsOfShare(sharePathFor(optionsOfTool(words)), longestWait);
            });
        } catch (const std::exception&) {
            // Such as a fault in the configuration file: the command itself will tell.
            return {};
        }
    };
    const auto completions = completionsForTool(words, begun, names);
    std::string text = completions.files ? "files\n" : "none\n";
    for (const auto& word : completions.words)
        if (word.starts_with(begun) && visible(word) == word)
            text += word + '\n';
    return text;
}

} // namespace TAVO::cli
