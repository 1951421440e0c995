#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include <tavo/cli/shell_command.h>
#include <tavo/client/wire/transport.h>

namespace TAVO::cli {

/// A connection over any non-blocking stream socket. Derived classes make and close it.
class StreamTransport : public Transport {
public:
    /// Ends what waits, from other threads, also when the transport is gone.
    class Stop {
    public:
        void interrupt() noexcept { ++interrupts_; }

    private:
        friend class StreamTransport;
        std::atomic<std::uint32_t> interrupts_ = 0;
    };

    void send(const TAVOX::OutputStream::Chunks& request) override;
    void receiveAll(std::uint8_t* buffer, std::uint64_t length) override;
    void interrupt() noexcept override;
    bool renew() noexcept override;
    bool hasUnaskedBytes() noexcept override;
    void ensureConnected() override;
    std::uint64_t connectionNumber() const noexcept override { return connections_; }
    void keepConnection(bool kept) noexcept override { kept_ = kept; }
    bool isConnected() const noexcept override { return socket_ >= 0; }
    void setTimeLimit(TimeLimit limit) override { deadline_.setLimit(limit); }
    TimeLimit timeLimit() const noexcept override { return deadline_.limit(); }
    std::intptr_t descriptor() const noexcept override { return socket_; }

protected:
    using Milliseconds = std::chrono::milliseconds;

    /// Connects nothing before it is used.
    explicit StreamTransport(std::shared_ptr<Stop> stop);

    /// Makes the connection. Returns the socket, which the derived class keeps.
    virtual int openStream() = 0;
    /// Closes the connection, which may be closed already. @param patience how long that may take.
    virtual void closeStream(Milliseconds patience) noexcept = 0;
    /// What became of the connection, to be added to a message; may be empty.
    virtual std::string fate() { return ""; }

private:
    void start();
    void close(Milliseconds patience) noexcept;
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

    std::shared_ptr<Stop> stop_;
    int socket_ = -1;
    std::uint64_t connections_ = 0;
    std::uint32_t seenInterrupts_ = 0;
    bool kept_ = false;
    Deadline deadline_;
    std::size_t readBegin_ = 0;
    std::size_t readEnd_ = 0;
    std::array<std::uint8_t, 65536> readAhead_{};
};

} // namespace TAVO::cli
