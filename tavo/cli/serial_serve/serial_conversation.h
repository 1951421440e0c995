#pragma once

#include <span>
#include <string_view>

#include <tavo/cli/door/conversation.h>
#include <tavo/cli/serial_serve/served_line.h>

namespace TAVO::cli {

/// Sends what a client says over a serial line, and asks what has come: at once after something moved, then
/// after 1 ms, and more and more seldom, down to every 20 ms.
class SerialConversation : public Conversation {
public:
    static constexpr Milliseconds shortestWait{1};
    static constexpr Milliseconds longestWait{20};

    /// @param line must outlive the conversation.
    SerialConversation(ServedLine& line, Send send);

    std::optional<Milliseconds> pause(Milliseconds silence) override;
    Milliseconds farewell() const override { return std::chrono::seconds(1); }
    void end() override {}

protected:
    ServedLine& line() { return line_; }
    void say(std::span<const std::uint8_t> bytes) { send_(bytes); }
    /// Goes no further with what the client sent if it has gone for good.
    void insistOnClient() { send_({}); }
    /// Sends over the line, and tells what has come.
    void forward(std::span<const std::uint8_t> bytes);
    /// What has come from the line, never empty.
    virtual void tell(std::string_view received) = 0;
    virtual bool isListening() const { return true; }

private:
    ServedLine& line_;
    Send send_;
    Milliseconds wait_{0};
};

/// A client that sends and gets plain bytes.
class PlainSerial final : public SerialConversation {
public:
    using SerialConversation::SerialConversation;

    bool receive(std::span<const std::uint8_t> bytes) override;

private:
    void tell(std::string_view received) override;
};

} // namespace TAVO::cli
