#pragma once

#include <string>
#include <string_view>

namespace TAVO::cli {

/// A progress line on standard error, for long commands. Shows nothing unless that is a terminal. The
/// destructor clears the line.
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
