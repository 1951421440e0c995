#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include <tavo/cli/serial_serve/backlog.h>
#include <tavo/cli/serial_serve/serial_conversation.h>
#include <tavo/cli/serial_serve/telnet.h>

namespace TAVO::cli {

/// A client that controls the line too: Telnet's COM port control option (RFC 2217). What the port cannot do
/// is answered with what is.
class Rfc2217 final : public SerialConversation, private telnet::Listener {
public:
    using SerialConversation::SerialConversation;

    bool receive(std::span<const std::uint8_t> bytes) override;

    /// CTS, DSR and carrier detect: the port tells nothing of its lines, and a program may wait for them.
    static constexpr std::uint8_t modemState = 0xB0;

private:
    using Value = std::span<const std::uint8_t>;

    void tell(std::string_view received) override;
    bool isListening() const override { return !isSuspended_; }

    void data(std::span<const std::uint8_t> bytes) override;
    void negotiate(telnet::Command verb, std::uint8_t option) override;
    void subnegotiate(std::span<const std::uint8_t> bytes) override;
    void command(std::uint8_t command) override;

    /// What the client sent before a command goes out before it.
    void flush();
    void answer(std::uint8_t command, Value value);
    void answer(std::uint8_t command, std::uint8_t value) { answer(command, {&value, 1}); }
    void control(std::uint8_t command, Value value);
    void setRate(Value value);
    void setDataBits(std::uint8_t bits);
    void setParity(std::uint8_t parity);
    void setStopBits(std::uint8_t bits);
    void setControl(std::uint8_t value);
    void setFlowControl(std::uint8_t value);
    void setBreak(bool isOn);
    void suspend(bool isSuspended);
    void purge(std::uint8_t what);

    telnet::Reader reader_;
    telnet::Options options_;
    telnet::Bytes unsent_;
    /// What comes while the client wants nothing.
    Backlog held_;
    std::uint8_t modemMask_ = 0xFF;
    bool isIntroduced_ = false;
    bool isBreakOn_ = false;
    bool isSuspended_ = false;
};

} // namespace TAVO::cli
