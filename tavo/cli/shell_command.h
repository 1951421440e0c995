#pragma once

#include <chrono>
#include <string>

#include <sys/types.h>

#include <tavo/cli/descriptor.h>

namespace TAVO::cli {

/// A shell command whose standard input and output are the two directions of a connection. It shares the
/// tool's standard error. Ctrl-C and the like do not reach it: it runs until it is ended.
class ShellCommand {
public:
    using Milliseconds = std::chrono::milliseconds;

    /// Starts it.
    /// @throws NetworkError if the system cannot.
    explicit ShellCommand(const std::string& command);
    ShellCommand(const ShellCommand&) = delete;
    ShellCommand& operator=(const ShellCommand&) = delete;
    /// Ends the command, see end().
    ~ShellCommand();

    /// Our end of the connection, non-blocking.
    int connection() const { return connection_.number(); }

    /// Waits that long for the command to end and then collects its exit status. Returns whether it ended.
    bool awaitEnd(Milliseconds patience) noexcept;
    /// Closes the connection, which should end the command. If it is still running after `patience`, sends
    /// SIGTERM, and at last SIGKILL.
    void end(Milliseconds patience) noexcept;
    /// "ended with exit status 1" and the like, once it has ended.
    std::string endText() const;

private:
    Descriptor connection_;
    pid_t process_ = -1;
    int status_ = 0;
};

} // namespace TAVO::cli
