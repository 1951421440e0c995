#include <cstdint>
#include <string>

#include <tavo/cli/jtag_serve/remote_bitbang.h>
#include <tests/cli/jtag_serve/cable.h>
#include <tests/fuzz/fuzz_input.h>

// Clients of remote_bitbang. Input: pieces of what the client sends, each with its length before it and the
// pause behind it. The chain does what the client clocks, whenever the client pauses, and every question has
// an answer.

namespace {

using fuzz::require;
using TAVO::cli::RemoteBitbang;
using Cable = tool_test::Cable<RemoteBitbang>;

/// Pins that are set one after the other.
class StraightPins {
public:
    /// @return false at the end of the conversation.
    bool take(char command) {
        if (command >= '0' && command <= '7') {
            const auto levels = command - '0';
            const bool tck = (levels & 4) != 0;
            if (tck && !tck_)
                found_ = isReset_ || chain.clock((levels & 2) != 0, (levels & 1) != 0);
            tck_ = tck;
        } else if (command >= 'r' && command <= 'u') {
            const bool isReset = command >= 't';
            if (isReset && !isReset_)
                chain.reset();
            isReset_ = isReset;
        } else if (command == 'R') {
            answers += (tck_ ? found_ : chain.tdo()) ? '1' : '0';
        }
        return command != 'Q';
    }

    jtag_test::ChainModel chain;
    std::string answers;

private:
    bool tck_ = false;
    bool found_ = true;    ///< TDO, at the rising edge
    bool isReset_ = false; ///< by TRST
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t length) {
    fuzz::Input input(bytes, length);
    Cable cable;
    StraightPins straight;
    bool isOver = false;
    while (!isOver && !input.empty()) {
        const auto piece = fuzz::textOf(input.block());
        for (const char command : piece)
            isOver = isOver || !straight.take(command);
        require(cable.type(piece) == !isOver, "a conversation ends at Q, and only there");
        const auto silence = RemoteBitbang::Milliseconds(input.byte());
        const auto more = isOver ? std::nullopt : cable.conversation.pause(silence);
        const bool isAnswered = cable.answers.size() == straight.answers.size();
        require(isOver || isAnswered || more, "a question is not forgotten");
        require(isOver || isAnswered || silence < RemoteBitbang::patience, "a client that waits is answered");
    }
    cable.conversation.end();

    require(straight.answers.starts_with(cable.answers), "TDO is what the chain says");
    require(cable.chain.events == straight.chain.events, "the chain does what the client clocks");
    return 0;
}
