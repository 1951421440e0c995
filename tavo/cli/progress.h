#pragma once

#include <string>
#include <string_view>

namespace TAVO::cli {

/// One line on the standard error stream that tells how far a long command is; nothing at all when that
/// stream is no terminal. The line is gone when the display is.
class Progress {
public:
    Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;
    ~Progress();

    /// Replaces the line.
    void show(std::string_view text);

private:
    bool onTerminal_;
    bool shown_ = false;
};

} // namespace TAVO::cli
