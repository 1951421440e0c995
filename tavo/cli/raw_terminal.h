#pragma once

#include <csignal>

namespace TAVO::cli {

/// Keeps a terminal in raw mode while it exists: passes on every key, Ctrl-C included, without echo. One at a
/// time.
///
/// On SIGTSTP it restores the terminal before the process stops; on SIGCONT it sets raw mode again.
class RawTerminal {
public:
    /// @param descriptor ignored unless it is a terminal.
    explicit RawTerminal(int descriptor);
    RawTerminal(const RawTerminal&) = delete;
    RawTerminal& operator=(const RawTerminal&) = delete;
    /// Restores the terminal.
    ~RawTerminal();

    /// Restores the terminal from a signal handler. Does nothing if there is no raw terminal.
    static void restore();

private:
    bool taken_ = false;
    struct sigaction stopBefore_ {};
    struct sigaction continueBefore_ {};
};

} // namespace TAVO::cli
