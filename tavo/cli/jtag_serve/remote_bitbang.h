#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include <tavo/cli/door/conversation.h>
#include <tavo/cli/jtag_serve/jtag_access.h>

namespace TAVO::cli {

/// A client of the protocol "remote_bitbang", which sets the pins and reads TDO by single characters. Its
/// clocks become scans; an exchange is made when it waits for TDO.
class RemoteBitbang final : public Conversation {
public:
    /// @param state where the TAP controllers are. @param access must outlive the conversation.
    RemoteBitbang(jtag::TapState state, const JtagAccess& access, Send send);

    bool receive(std::span<const std::uint8_t> bytes) override;
    std::optional<Milliseconds> pause(Milliseconds silence) override;
    void end() override;

    /// How long a client that has asked for TDO may take for the clock that comes next.
    static constexpr Milliseconds patience{20};

private:
    bool take(char command);
    void setPins(unsigned levels);
    void setResets(unsigned levels);
    void read();
    void answer(std::size_t count, bool level);
    /// Hands the clock on that TCK has risen for.
    void clock(bool isRead);
    bool isShifting() const;
    bool expectsAnswers() const { return !repeats_.empty(); }
    /// Asks the tracker for what the client waits for, though TCK may not change before the answer.
    void settle();
    void exchange();
    void warnOnce(char command, const std::string& text);

    const JtagAccess& access_;
    Send send_;
    jtag::TapTracker tracker_;
    bool tck_ = false;
    bool tms_ = false;
    bool tdi_ = false;
    /// TCK has risen, and is high; the tracker does not know yet.
    bool hasRisen_ = false;
    /// TMS and TDI at that time.
    bool risenTms_ = false;
    bool risenTdi_ = false;
    /// How often TDO was asked for since TCK fell last.
    std::uint32_t reads_ = 0;
    /// How often each level is to be answered that the tracker was asked for.
    std::vector<std::uint32_t> repeats_;
    /// TDO at the rising edge that the last exchange told of last.
    bool lastLevel_ = true;
    /// Something came since the last exchange.
    bool isChanged_ = false;
    std::array<bool, 256> warned_{};
};

} // namespace TAVO::cli
