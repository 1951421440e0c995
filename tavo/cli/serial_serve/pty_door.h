#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <tavo/cli/descriptor.h>
#include <tavo/cli/door/door.h>
#include <tavo/cli/serial_serve/backlog.h>
#include <tavo/cli/serial_serve/terminal_link.h>

namespace TAVO::cli {

/// A pseudo terminal that programs open as they would a serial port. The door keeps what is sent to them
/// while none has it open, up to the size of a Backlog; beyond that it drops the oldest.
class PtyDoor {
public:
    /// Told of the rate that a program has set; 0 for one that has no number.
    using FollowRate = std::function<void(std::int32_t baud)>;

    /// @param link where to put a symbolic link to the terminal; empty for nowhere.
    /// @throws Failure.
    PtyDoor(std::int32_t baud, const std::string& link);

    /// "PTY /dev/pts/3".
    std::string place() const { return "PTY " + path_; }

    /// Converses until programs have had the terminal open and all have closed it, or until nobody has it
    /// open and the conversation is about nothing any more.
    /// @throws Interrupted when a signal came; what the conversation throws.
    void serve(const Door::Greet& greet, const FollowRate& follow);

private:
    void prepareTerminal(std::int32_t baud);
    bool isOpen() const;
    std::vector<std::uint8_t> read();
    /// Hands over as much of the backlog as fits.
    void write();
    void followRate(const FollowRate& follow);
    /// Waits no longer than that for something to read.
    void wait(std::chrono::milliseconds time, bool isOpen);

    Descriptor master_;
    std::string path_;
    std::optional<TerminalLink> link_;
    std::uint32_t rate_ = 0;
    Backlog backlog_;
};

} // namespace TAVO::cli
