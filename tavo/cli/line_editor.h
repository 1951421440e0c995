#pragma once

#include <functional>
#include <string>
#include <vector>

#include <tavo/cli/completion.h>
#include <tavo/cli/line_source.h>

namespace TAVO::cli {

/// Lines that somebody types at the terminal, with a history and completion by the tab key. One at a time.
class LineEditor : public LineSource {
public:
    /// @param words those before the one that begins with `begun`.
    using Complete =
        std::function<Completions(const std::vector<std::string>& words, const std::string& begun)>;

    LineEditor(std::string prompt, Complete complete);
    LineEditor(const LineEditor&) = delete;
    LineEditor& operator=(const LineEditor&) = delete;
    /// Keeps the history for the next time.
    ~LineEditor() override;

    /// On SIGINT a new line begins.
    std::optional<std::string> next() override;

private:
    std::string prompt_;
    std::string historyFile_;
};

/// Where lines are kept: "tavo/history" below XDG_STATE_HOME, or ~/.local/state; empty if there is neither.
std::string historyFile();

} // namespace TAVO::cli
