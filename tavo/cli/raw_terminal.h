#pragma once

#include <csignal>

namespace TAVO::cli {

/// A terminal that hands over every key as it is, Ctrl-C included, and shows nothing by itself, while this
/// exists. There is one at a time.
///
/// SIGTSTP gives the terminal back before it stops the process, and SIGCONT takes it again.
class RawTerminal {
public:
    /// @param descriptor nothing happens when it is no terminal.
    explicit RawTerminal(int descriptor);
    RawTerminal(const RawTerminal&) = delete;
    RawTerminal& operator=(const RawTerminal&) = delete;
    /// Gives the terminal back as it was.
    ~RawTerminal();

    /// The same at once, for signal handlers; nothing when there is no raw terminal.
    static void restore();

private:
    bool taken_ = false;
    struct sigaction stopBefore_ {};
    struct sigaction continueBefore_ {};
};

} // namespace TAVO::cli
