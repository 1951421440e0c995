#pragma once

#include <memory>
#include <optional>
#include <string>

#include <tavo/cli/shell_command.h>
#include <tavo/cli/stream_transport.h>

namespace TAVO::cli {

/// The command that a user means by --via: %h is the host, %p the port, %% a percent sign.
/// @throws Failure (usage) for anything else behind a percent sign, and for a host with characters that a
///         shell or a command might take for something else than a name or an address.
std::string viaCommand(const std::string& pattern, const std::string& host, int port);

/// A connection through a command that a shell runs. Made anew, it starts the command again.
class ViaTransport final : public StreamTransport {
public:
    /// Starts nothing before it is used.
    ViaTransport(std::string command, std::shared_ptr<Stop> stop);
    /// Ends the command.
    ~ViaTransport() override;

private:
    int openStream() override;
    void closeStream(Milliseconds patience) noexcept override;
    std::string fate() override;

    std::string command_;
    std::optional<ShellCommand> running_;
};

} // namespace TAVO::cli
