#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include <tavo/cli/door/conversation.h>
#include <tavo/cli/jtag_serve/jtag_access.h>

namespace TAVO::cli {

/// A client of the Xilinx Virtual Cable protocol, version 1.0. A "shift:" takes at most one exchange; one in
/// which no register shifts is answered at once, and made with the next.
class Xvc final : public Conversation {
public:
    /// @param state where the TAP controllers are. @param access must outlive the conversation.
    Xvc(jtag::TapState state, const JtagAccess& access, Send send);

    bool receive(std::span<const std::uint8_t> bytes) override;
    std::optional<Milliseconds> pause(Milliseconds silence) override;
    void end() override;

    /// What "getinfo:" tells. Some clients take it for bits, others for bytes: both will do.
    static constexpr std::size_t announced = 65536;
    /// How long what was answered waits for something to join.
    static constexpr Milliseconds patience{20};

private:
    using Bytes = std::vector<std::uint8_t>;

    /// Executes the command at the front. Returns false if it is not there as a whole.
    bool takeCommand();
    bool takePeriod();
    bool takeShift();
    /// The whole number of four bytes at `place`, the lowest first.
    std::uint32_t numberAt(std::size_t place) const;
    bool begins(std::string_view command) const;
    void drop(std::size_t count);
    bool shifts(const jtag::BitString& tms) const;
    jtag::BitString exchange();
    /// Sends the client away.
    void refuse(const std::string& why);

    const JtagAccess& access_;
    Send send_;
    jtag::TapTracker tracker_;
    Bytes buffer_;
    std::size_t begin_ = 0; ///< of what has not been executed
    bool isChanged_ = false;
    bool isOver_ = false;
};

} // namespace TAVO::cli
