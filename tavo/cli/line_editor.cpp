#include <tavo/cli/line_editor.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <stdexcept>
#include <system_error>
#include <utility>

#include <sys/stat.h>
#include <unistd.h>

#include <readline/history.h>
#include <readline/readline.h>

#include <tavo/cli/interrupt.h>
#include <tavo/cli/values/words.h>

namespace TAVO::cli {

namespace {

namespace fs = std::filesystem;

constexpr int mostLines = 1000;

/// What the library calls has no other way to the editor.
LineEditor::Complete completer; // NOLINT(cert-err58-cpp)
std::vector<std::string> candidates;
std::optional<std::string> finished;
bool isFinished = false;

void finish(char* text) {
    rl_callback_handler_remove();
    isFinished = true;
    finished = text ? std::optional<std::string>(text) : std::nullopt;
    std::free(text); // NOLINT(cppcoreguidelines-no-malloc): the library's own
}

/// @param more 0 for the first one, then more.
char* nextCandidate(const char* /*begun*/, int more) {
    static std::size_t next = 0;
    next = more == 0 ? 0 : next;
    return next < candidates.size() ? ::strdup(candidates[next++].c_str()) : nullptr;
}

std::vector<std::string> wordsBefore(int start) {
    try {
        return splitWords(std::string_view(rl_line_buffer, static_cast<std::size_t>(start)));
    } catch (const std::invalid_argument&) {
        return {};
    }
}

char** completeWord(const char* begun, int start, int /*end*/) {
    try {
        auto found = completer(wordsBefore(start), begun);
        rl_attempted_completion_over = found.files ? 0 : 1;
        candidates.clear();
        for (auto& word : found.words)
            if (word.starts_with(begun))
                candidates.push_back(std::move(word));
        return rl_completion_matches(begun, nextCandidate);
    } catch (const std::exception&) {
        rl_attempted_completion_over = 1;
        return nullptr;
    }
}

void keepHistory(const std::string& path) {
    if (path.empty())
        return;
    std::error_code ignored;
    const auto folder = fs::path(path).parent_path();
    if (fs::create_directories(folder, ignored))
        fs::permissions(folder, fs::perms::owner_all, ignored);
    const auto mask = ::umask(0077);
    write_history(path.c_str());
    ::umask(mask);
}

void remember(const std::string& line) {
    const auto* last = history_get(history_base + history_length - 1);
    if (!line.empty() && line.front() != ' ' && (!last || line != last->line))
        add_history(line.c_str());
}

/// The library's state outlives a line that is given up.
void giveUpLine() {
    rl_free_line_state();
    rl_callback_sigcleanup();
    rl_callback_handler_remove();
    std::fputs("\n", stderr);
}

} // namespace

std::string historyFile() {
    // NOLINTBEGIN(concurrency-mt-unsafe): nobody changes the environment
    const char* state = std::getenv("XDG_STATE_HOME");
    if (state && *state == '/')
        return std::string(state) + "/tavo/history";
    const char* home = std::getenv("HOME");
    return home && *home == '/' ? std::string(home) + "/.local/state/tavo/history" : "";
    // NOLINTEND(concurrency-mt-unsafe)
}

LineEditor::LineEditor(std::string prompt, Complete complete)
    : prompt_(std::move(prompt))
    , historyFile_(historyFile()) {
    completer = std::move(complete);
    rl_readline_name = "tavo";
    rl_outstream = stderr;
    rl_catch_signals = 0;
    rl_attempted_completion_function = completeWord;
    rl_completer_word_break_characters = " \t";
    using_history();
    stifle_history(mostLines);
    if (!historyFile_.empty())
        read_history(historyFile_.c_str());
}

LineEditor::~LineEditor() {
    keepHistory(historyFile_);
    completer = nullptr;
}

std::optional<std::string> LineEditor::next() {
    for (;;) {
        isFinished = false;
        rl_callback_handler_install(prompt_.c_str(), finish);
        try {
            while (!isFinished)
                if (InterruptWatch::waitForInput(STDIN_FILENO, std::chrono::hours(1)))
                    rl_callback_read_char();
        } catch (const Interrupted& interrupted) {
            giveUpLine();
            if (interrupted.signal != SIGINT)
                throw;
            InterruptWatch::forget();
            continue;
        }
        if (!finished) {
            std::fputs("\n", stderr);
            return std::nullopt;
        }
        remember(*finished);
        return finished;
    }
}

} // namespace TAVO::cli
