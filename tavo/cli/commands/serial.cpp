#include <tavo/cli/commands/commands.h>
#include <tavo/cli/commands/serial.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <optional>
#include <string>

#include <fmt/format.h>
#include <unistd.h>

#include <tavo/cli/interrupt.h>
#include <tavo/cli/object_choice.h>
#include <tavo/cli/output.h>
#include <tavo/cli/raw_terminal.h>
#include <tavo/cli/serial_link.h>
#include <tavo/cli/serial_log.h>
#include <tavo/cli/values/visible_text.h>

namespace TAVO::cli {

namespace {

using Clock = std::chrono::steady_clock;
using Seconds = std::chrono::duration<double>;

constexpr std::chrono::milliseconds lookInterval(40);

struct SerialOptions : SerialLineOptions {
    double wait = 1;
    std::string until;
    std::string leaveKey = "^]";
    bool sendsBreak = false;
    std::string log;

    void describe(OptionList& list) {
        SerialLineOptions::describe(list);
        list.add("--wait", wait, "How long to listen after the end of input that is not a terminal",
                 {.showsDefault = true,
                  .kind = ValueKind::duration,
                  .limits = between(0.0, 1e6),
                  .valueName = "DURATION"});
        list.add("--until", until,
                 "End when this text arrives; unless input is a terminal, a missing text is a failure");
        list.add("--leave", leaveKey, "Control key that leaves, so that Ctrl-] can be sent",
                 {.showsDefault = true, .valueName = "^KEY"});
        list.add("--break", sendsBreak, "Send a break first");
        list.add("--log", log, "Add what is sent and received to this file, with the time of each line",
                 {.kind = ValueKind::file});
    }
};

/// The character of a control key, such as "^]".
char parseControlKey(const std::string& text) {
    const char key = text.size() == 2 && text[0] == '^' ? text[1] : '\0';
    const bool isLetter = (key >= 'a' && key <= 'z') || (key >= '@' && key <= '_');
    if (!isLetter)
        throw Failure(ExitCode::usage, fmt::format("--leave: '{}' is no control key such as ^] or ^A", text));
    return static_cast<char>(key & 0x1f);
}

/// The user's input, typed or piped.
class Input {
public:
    explicit Input(char leaveKey)
        : terminal_(::isatty(STDIN_FILENO) == 1)
        , leaveKey_(leaveKey) {}

    bool isTerminal() const { return terminal_; }
    bool ended() const { return ended_; }

    /// Takes the available input; waits at most `time` for it.
    std::string take(std::chrono::milliseconds time) {
        if (ended_) {
            InterruptWatch::pause(time);
            return {};
        }
        if (!InterruptWatch::waitForInput(STDIN_FILENO, time))
            return {};
        std::array<char, 4096> part{};
        const auto got = ::read(STDIN_FILENO, part.data(), part.size());
        if (got < 0 && (errno == EINTR || errno == EAGAIN))
            return {};
        std::string bytes(part.data(), static_cast<std::size_t>(got < 0 ? 0 : got));
        const auto leave = terminal_ ? bytes.find(leaveKey_) : std::string::npos;
        ended_ = got <= 0 || leave != std::string::npos;
        bytes.resize(std::min(leave, bytes.size()));
        return bytes;
    }

private:
    bool terminal_;
    char leaveKey_;
    bool ended_ = false;
};

class Console {
public:
    /// @param log may be empty.
    Console(SerialLink& link, Output& output, const SerialOptions& options, SerialLog* log)
        : link_(link)
        , output_(output)
        , wait_(options.wait)
        , text_(options.until)
        , log_(log) {}

    /// Returns whether the wanted text arrived.
    bool run(Input& input) {
        const InterruptWatch::LastWill lastWill(RawTerminal::restore);
        const RawTerminal terminal(STDIN_FILENO);
        auto end = Clock::time_point::max();
        auto pause = std::chrono::milliseconds(0);
        for (;;) {
            const bool last = Clock::now() >= end;
            const auto typed = input.take(pause);
            const auto received = link_.exchange(typed);
            if (log_) {
                log_->sent(typed);
                log_->received(received);
            }
            if (takes(received))
                return true;
            if (last || (input.ended() && input.isTerminal()))
                return false;
            if (input.ended() && end == Clock::time_point::max())
                end = Clock::now() + std::chrono::duration_cast<Clock::duration>(wait_);
            pause = typed.empty() && received.empty() ? lookInterval : std::chrono::milliseconds(0);
        }
    }

    const std::string& received() const { return received_; }

private:
    bool takes(const std::string& received) {
        if (output_.isJson()) {
            received_ += received;
        } else if (!received.empty()) {
            output_.write(received);
            output_.finish();
        }
        return text_.sees(received);
    }

    SerialLink& link_;
    Output& output_;
    Seconds wait_;
    TextWatch text_;
    SerialLog* log_;
    std::string received_;
};

void talk(Session& session, Output& output, const SerialOptions& options) {
    Input input(parseControlKey(options.leaveKey));
    if (input.isTerminal() && output.isJson())
        throw Failure(ExitCode::usage, "--json does not work with a console on the terminal");
    std::optional<SerialLog> log;
    if (!options.log.empty())
        log.emplace(options.log);
    const auto port = chooseObject<CommonModules::Com_v1_0>(session, options.object, "serial port");
    if (options.sendsBreak)
        sendBreak(session, port, options.settings().request());
    SerialLink link(session, port, options.settings().request());
    Console console(link, output, options, log ? &*log : nullptr);
    if (input.isTerminal())
        std::fputs(
            fmt::format("{}: Ctrl-{} leaves\n", visible(port->getFullName()), options.leaveKey[1]).c_str(),
            stderr);
    const bool reached = console.run(input);
    link.close();

    output.show(
        [&](JsonWriter& json) {
            json.object([&] {
                json.key("object").text(port->getFullName());
                if (!options.until.empty())
                    json.key("reached").flag(reached);
                json.key("received").exactText(console.received());
            });
        },
        [](TextWriter&) {});
    if (input.isTerminal())
        std::fputs("\n", stderr);
    if (!options.until.empty() && !reached && !input.isTerminal())
        throw Failure(ExitCode::refused, fmt::format("'{}' did not arrive", options.until));
}

} // namespace

void SerialLineOptions::describe(OptionList& list) {
    const auto line = "Line";
    list.add("--object", object, "Full name of the port; required if there are several");
    list.add("--baud", baud, "Bits per second", {.showsDefault = true, .heading = line});
    list.add("--bits", dataBits, "Data bits", {.showsDefault = true, .heading = line});
    list.add("--parity", parity, "none, even or odd",
             {.showsDefault = true, .choices = {"none", "even", "odd"}, .heading = line});
    list.add("--stop", stopBits, "Stop bits", {.showsDefault = true, .heading = line});
    list.add("--rtscts", rtsCts, "RTS/CTS handshake", {.heading = line});
    list.add("--dtrdsr", dtrDsr, "DTR/DSR handshake", {.heading = line});
    list.add("--xonxoff", xonXoff, "XON/XOFF handshake", {.heading = line});
    list.add("--loopback", loopback, "Sent bytes come back", {.heading = line});
}

LineSettings SerialLineOptions::settings() const {
    const auto kind = parity == "none" ? Parity::none : parity == "even" ? Parity::even : Parity::odd;
    return {baud, dataBits, kind, stopBits, rtsCts, dtrDsr, xonXoff, loopback};
}

std::vector<Command> serialCommands() {
    return {command("serial", "A console on the serial port: Ctrl-] leaves", talk),
            command("serial serve", "Be a serial port for other programs, on the network or as a terminal",
                    serveSerial)};
}

} // namespace TAVO::cli
