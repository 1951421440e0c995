#pragma once

#include <string>
#include <string_view>

namespace TAVO::cli {

/// A progress line on standard error, for long commands. Shows nothing unless that is a terminal that
/// can clear a line. The destructor clears it.
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
