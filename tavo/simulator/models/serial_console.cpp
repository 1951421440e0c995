#include <tavo/simulator/models/serial_console.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <utility>

namespace TAVO::simulator {

namespace {

struct BootMessage {
    std::uint64_t sinceBoot;
    std::string_view text;
};

constexpr std::array bootMessages = {
    BootMessage{300'000, "\r\nTarget firmware 1.0\r\n"},
    BootMessage{600'000, "CPU: 4 cores\r\n"},
    BootMessage{1'500'000, "Memory: 2048 MB\r\n"},
    BootMessage{2'000'000, "I2C: devices at 0x48 0x50\r\n"},
    BootMessage{2'600'000, "No boot device, starting console\r\n"},
    BootMessage{Board::bootDuration, SerialConsole::prompt},
};

constexpr std::uint8_t bell = 0x07;
constexpr std::uint8_t backspace = 0x08;
constexpr std::uint8_t remove = 0x7F;

bool isPrintable(std::uint8_t byte) { return byte >= 0x20 && byte != remove; }

template <class... Values>
std::string formatted(const char* format, Values... values) {
    std::array<char, 96> text{};
    const auto length = std::snprintf(text.data(), text.size(), format, values...);
    return {text.data(), static_cast<std::size_t>(std::clamp(length, 0, static_cast<int>(text.size()) - 1))};
}

} // namespace

SerialConsole::SerialConsole(std::shared_ptr<Board> board)
    : BoardObserver(std::move(board)) {
    SerialConsole::boardChanged();
}

void SerialConsole::type(std::uint8_t byte) {
    catchUp();
    if (!booting_ || nextMessage_ < bootMessages.size())
        return;
    const bool endsCarriageReturn = std::exchange(afterCarriageReturn_, byte == '\r') && byte == '\n';
    if (endsCarriageReturn)
        return;
    if (byte == '\r' || byte == '\n') {
        endLine();
    } else if (byte == backspace || byte == remove) {
        if (line_.empty())
            return;
        line_.pop_back();
        print("\b \b");
    } else if (isPrintable(byte)) {
        const bool fits = line_.size() < longestLine;
        if (fits)
            line_.push_back(static_cast<char>(byte));
        const char echo = static_cast<char>(fits ? byte : bell);
        print({&echo, 1});
    }
}

std::string SerialConsole::take(std::size_t count) {
    catchUp();
    loseOldest();
    auto taken = output_.substr(0, count);
    output_.erase(0, taken.size());
    return taken;
}

void SerialConsole::discardOutput() {
    catchUp();
    output_.clear();
}

void SerialConsole::catchUp() {
    board().settle();
    settle(board().now());
}

void SerialConsole::settle(std::uint64_t time) {
    if (!booting_)
        return;
    for (; nextMessage_ < bootMessages.size() && bootTime_ + bootMessages[nextMessage_].sinceBoot <= time;
         ++nextMessage_)
        print(bootMessages[nextMessage_].text);
}

void SerialConsole::boardChanged() {
    const auto boot = board().bootTime();
    booting_ = boot.has_value();
    bootTime_ = boot.value_or(0);
    nextMessage_ = 0;
    afterCarriageReturn_ = false;
    line_.clear();
    if (!booting_)
        output_.clear();
}

void SerialConsole::print(std::string_view text) {
    output_ += text;
    if (output_.size() > 2 * longestBacklog) // not for every byte: it moves all the others
        loseOldest();
}

void SerialConsole::loseOldest() {
    if (output_.size() > longestBacklog)
        output_.erase(0, output_.size() - longestBacklog);
}

void SerialConsole::endLine() {
    print("\r\n");
    const auto boots = board().bootCount();
    run(std::exchange(line_, {}));
    if (board().bootCount() == boots)
        print(prompt);
}

void SerialConsole::run(const std::string& line) {
    const auto begin = std::min(line.find_first_not_of(' '), line.size());
    const auto end = std::min(line.find(' ', begin), line.size());
    const auto command = line.substr(begin, end - begin);
    if (command.empty())
        return;
    if (command == "help")
        print("help          this list\r\n"
              "version       the firmware's version\r\n"
              "status        power, boots and settings\r\n"
              "echo TEXT     says it again\r\n"
              "temp          the board's temperature\r\n"
              "reboot        boots again\r\n");
    else if (command == "version")
        print("Target firmware 1.0\r\n");
    else if (command == "status")
        showStatus();
    else if (command == "echo")
        print(line.substr(std::min(end + 1, line.size())) + "\r\n");
    else if (command == "temp")
        print(formatted("%.1f C\r\n", board().temperature()));
    else if (command == "reboot")
        board().reboot();
    else
        print("Unknown command: " + command + " (try help)\r\n");
}

void SerialConsole::showStatus() {
    const auto seconds = static_cast<double>(board().sincePowerOn().value_or(0)) / 1e6;
    print(formatted("power on for %.1f s\r\n", seconds));
    print(formatted("power-ons %u, boots %u\r\n", board().powerOnCount(), board().bootCount()));
    print(board().bootFoundClearedCmos() ? "settings were cleared\r\n" : "settings kept\r\n");
}

} // namespace TAVO::simulator
