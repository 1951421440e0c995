#include <cstdint>
#include <string>
#include <string_view>

#include <tavo/cli/jtag_serve/xvc.h>
#include <tests/cli/jtag_serve/cable.h>
#include <tests/fuzz/fuzz_input.h>

// Clients of XVC. Input: pieces of what the client sends, each with its length before it and the pause behind
// it. Wherever it is cut, the chain does and the client hears what the clocks say, up to the first command
// that is none; the client is sent away there.

namespace {

using fuzz::require;
using Cable = tool_test::Cable<TAVO::cli::Xvc>;

/// The protocol as its description has it: one command after the other, each whole.
class StraightServer {
public:
    explicit StraightServer(std::string_view input)
        : rest_(input) {}

    /// @return whether everything so far was a command, or may become one.
    bool run() {
        while (!rest_.empty()) {
            if (takes("getinfo:"))
                answers += "xvcServer_v1.0:65536\n";
            else if (begins("settck:", 4))
                setPeriod();
            else if (begins("shift:", 4)) {
                if (numberAt(6) > 65536 * 8)
                    return false;
                if (!takeShift())
                    return true;
            } else
                return isPartOfAny();
        }
        return true;
    }

    jtag_test::ChainModel chain;
    std::string answers;

private:
    bool takes(std::string_view command) {
        if (!rest_.starts_with(command))
            return false;
        rest_.remove_prefix(command.size());
        return true;
    }
    bool begins(std::string_view command, std::size_t behind) const {
        return rest_.starts_with(command) && rest_.size() >= command.size() + behind;
    }
    bool isPartOfAny() const {
        const auto isPartOf = [this](std::string_view command) {
            return command.starts_with(rest_.substr(0, command.size()));
        };
        return isPartOf("getinfo:") || isPartOf("settck:") || isPartOf("shift:");
    }
    std::uint32_t numberAt(std::size_t place) const {
        std::uint32_t number = 0;
        for (std::size_t byte = 4; byte-- > 0;)
            number = number << 8 | static_cast<std::uint8_t>(rest_[place + byte]);
        return number;
    }
    void setPeriod() {
        const std::uint64_t period = std::max(numberAt(7), 1u);
        rest_.remove_prefix(11);
        const auto hertz = std::max<std::uint64_t>(1'000'000'000 / period, 1);
        const auto set = hertz < 3 ? 1 : hertz / 3 * 2;
        const auto told = (1'000'000'000 + set - 1) / set;
        for (unsigned shift = 0; shift < 32; shift += 8)
            answers += static_cast<char>(told >> shift & 0xFF);
    }
    bool takeShift() {
        const std::size_t bits = numberAt(6);
        const std::size_t bytes = (bits + 7) / 8;
        if (rest_.size() < 10 + 2 * bytes)
            return false;
        const auto bitOf = [&](std::size_t place, std::size_t bit) {
            return (rest_[place + bit / 8] >> bit % 8 & 1) != 0;
        };
        std::string tdo(bytes, '\0');
        for (std::size_t bit = 0; bit < bits; ++bit)
            if (chain.clock(bitOf(10, bit), bitOf(10 + bytes, bit)))
                tdo[bit / 8] = static_cast<char>(tdo[bit / 8] | 1 << bit % 8);
        answers += tdo;
        rest_.remove_prefix(10 + 2 * bytes);
        return true;
    }

    std::string_view rest_;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t length) {
    fuzz::Input input(bytes, length);
    Cable cable;
    std::string sent;
    bool isWelcome = true;
    while (isWelcome && !input.empty()) {
        const auto piece = fuzz::textOf(input.block());
        sent += piece;
        isWelcome = cable.type(piece);
        if (isWelcome)
            cable.conversation.pause(TAVO::cli::Xvc::Milliseconds(input.byte()));
    }
    cable.conversation.end();

    StraightServer straight(sent);
    require(straight.run() == isWelcome, "a client is sent away for what is no command, and only for it");
    require(cable.answers == straight.answers, "TDO is what the chain says");
    require(cable.chain.events == straight.chain.events, "the chain does what the client clocks");
    require(cable.warnings.empty() == isWelcome, "a client is sent away with a word about it");
    return 0;
}
