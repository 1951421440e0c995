#pragma once

#include <string>

namespace TAVO::cli {

/// A symbolic link to a terminal, there while this exists. Takes no other file's place: only that of a link
/// of this user to a terminal that is gone, as a server that was killed leaves it, or to this very terminal.
class TerminalLink {
public:
    /// @throws Failure (usage) that names the path, if it cannot be made.
    TerminalLink(std::string path, std::string terminal);
    TerminalLink(const TerminalLink&) = delete;
    TerminalLink& operator=(const TerminalLink&) = delete;
    /// Removes the link, if it still leads to the terminal.
    ~TerminalLink();

private:
    bool isLeftOver() const;

    std::string path_;
    std::string terminal_;
};

} // namespace TAVO::cli
