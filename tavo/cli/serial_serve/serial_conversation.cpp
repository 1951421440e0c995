#include <tavo/cli/serial_serve/serial_conversation.h>

#include <algorithm>
#include <utility>

namespace TAVO::cli {

SerialConversation::SerialConversation(ServedLine& line, Send send)
    : line_(line)
    , send_(std::move(send)) {}

void SerialConversation::forward(std::span<const std::uint8_t> bytes) {
    wait_ = Milliseconds(0);
    while (!bytes.empty()) {
        const auto part = bytes.first(std::min(bytes.size(), ServedLine::mostSentAtOnce));
        bytes = bytes.subspan(part.size());
        insistOnClient();
        const auto received = line_.exchange({reinterpret_cast<const char*>(part.data()), part.size()});
        if (!received.empty())
            tell(received);
    }
}

std::optional<Conversation::Milliseconds> SerialConversation::pause(Milliseconds silence) {
    if (!isListening())
        return std::nullopt;
    const auto received = line_.exchange({});
    if (!received.empty()) {
        tell(received);
        wait_ = Milliseconds(0);
    } else if (!line_.works()) {
        return std::nullopt;
    } else {
        wait_ = std::clamp(2 * wait_, shortestWait, longestWait);
    }
    return silence + wait_;
}

bool PlainSerial::receive(std::span<const std::uint8_t> bytes) {
    forward(bytes);
    return true;
}

void PlainSerial::tell(std::string_view received) {
    say({reinterpret_cast<const std::uint8_t*>(received.data()), received.size()});
}

} // namespace TAVO::cli
