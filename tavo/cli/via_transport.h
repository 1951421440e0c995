#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include <tavo/cli/shell_command.h>
#include <tavo/client/wire/transport.h>

namespace TAVO::cli {

/// The command that a user means by --via: %h is the host, %p the port, %% a percent sign.
/// @throws Failure (usage) for anything else behind a percent sign, and for a host with characters that a
///         shell or a command might take for something else than a name or an address.
std::string viaCommand(const std::string& pattern, const std::string& host, int port);

/// A connection through a command that a shell runs. Made anew, it starts the command again.
class ViaTransport final : public Transport {
public:
    /// Ends what waits, from other threads, also when the transport is gone.
    class Stop {
    public:
        void interrupt() noexcept { ++interrupts_; }

    private:
        friend class ViaTransport;
        std::atomic<std::uint32_t> interrupts_ = 0;
    };

    /// Starts nothing before it is used.
    ViaTransport(std::string command, std::shared_ptr<Stop> stop);
    /// Ends the command.
    ~ViaTransport() override;

    void send(const TAVOX::OutputStream::Chunks& request) override;
    void receiveAll(std::uint8_t* buffer, std::uint64_t length) override;
    void interrupt() noexcept override;
    bool renew() noexcept override;
    bool hasUnaskedBytes() noexcept override;
    void ensureConnected() override;
    std::uint64_t connectionNumber() const noexcept override { return starts_; }
    void keepConnection(bool kept) noexcept override { kept_ = kept; }
    bool isConnected() const noexcept override { return running_.has_value(); }
    void setTimeLimit(TimeLimit limit) override { deadline_.setLimit(limit); }
    TimeLimit timeLimit() const noexcept override { return deadline_.limit(); }

private:
    void start();
    /// Gives the command up. @param patience how long it may take to end by itself.
    void close(ShellCommand::Milliseconds patience) noexcept;
    /// The same, and throws why.
    [[noreturn]] void giveUp(const char* why);
    /// Waits until the connection can be read or written.
    void await(short event);
    void sendAll(const std::uint8_t* bytes, std::size_t length);
    /// @return how many bytes came.
    std::size_t receiveSome(std::uint8_t* buffer, std::size_t length);
    std::size_t takeReadAhead(std::uint8_t* buffer, std::size_t length) noexcept;
    /// Whether the far end has closed.
    bool atEnd() const noexcept;
    /// Closes, and throws what became of the connection.
    [[noreturn]] void failBroken(const std::string& what);

    std::string command_;
    std::shared_ptr<Stop> stop_;
    std::optional<ShellCommand> running_;
    std::uint64_t starts_ = 0;
    std::uint32_t seenInterrupts_ = 0;
    bool kept_ = false;
    Deadline deadline_;
    std::size_t readBegin_ = 0;
    std::size_t readEnd_ = 0;
    std::array<std::uint8_t, 65536> readAhead_{};
};

} // namespace TAVO::cli
