#pragma once

#include <chrono>
#include <string>

#include <sys/types.h>

#include <tavo/cli/descriptor.h>

namespace TAVO::cli {

/// A command that a shell runs, with its standard input and output as the two directions of one connection.
/// Its standard error stream is the tool's. Ctrl-C and the like do not reach it: it serves until it is ended.
class ShellCommand {
public:
    using Milliseconds = std::chrono::milliseconds;

    /// Starts it.
    /// @throws NetworkError when the system cannot.
    explicit ShellCommand(const std::string& command);
    ShellCommand(const ShellCommand&) = delete;
    ShellCommand& operator=(const ShellCommand&) = delete;
    /// Ends it, see end().
    ~ShellCommand();

    /// The near end of the connection, which does not block.
    int connection() const { return connection_.number(); }

    /// Whether it ends within that time. Its exit status is collected then.
    bool awaitEnd(Milliseconds patience) noexcept;
    /// Closes the connection, by which the command should end. What does not within the patience is told to,
    /// and killed when that does not help either.
    void end(Milliseconds patience) noexcept;
    /// "ended with exit status 1" and the like, once it has ended.
    std::string endText() const;

private:
    Descriptor connection_;
    pid_t process_ = -1;
    int status_ = 0;
};

} // namespace TAVO::cli
