#include <tavo/cli/commands/serial.h>

#include <memory>
#include <utility>

#include <fmt/format.h>

#include <tavo/cli/door/door.h>
#include <tavo/cli/door/told_place.h>
#include <tavo/cli/object_choice.h>
#include <tavo/cli/serial_serve/guarded_line.h>
#include <tavo/cli/serial_serve/pty_door.h>
#include <tavo/cli/serial_serve/rfc2217.h>

namespace TAVO::cli {

namespace {

/// A port that is open on the device, for as long as an action takes.
template <class Action>
void withLine(Session& session, Output& output, const SerialServeOptions& options, Action action) {
    const auto port = chooseObject<CommonModules::Com_v1_0>(session, options.object, "serial port");
    GuardedLine line(session, output, port, options.settings());
    try {
        action(line);
        line.drain();
    } catch (const Interrupted&) {
        InterruptWatch::forget();
    }
    line.throwIfFailed();
    line.close();
}

void serveNetwork(Session& session, Output& output, const SerialServeOptions& options) {
    Door door(parseListenAddress(options.rfc2217 + options.tcp), {});
    withLine(session, output, options, [&](GuardedLine& line) {
        tellIfAnybodyReads(output, door.place());
        do {
            door.serve([&](Conversation::Send send) -> std::unique_ptr<Conversation> {
                if (options.rfc2217.empty())
                    return std::make_unique<PlainSerial>(line, std::move(send));
                return std::make_unique<Rfc2217>(line, std::move(send));
            });
            line.restore();
            line.throwIfFailed();
        } while (!options.once);
    });
}

void followRate(GuardedLine& line, std::int32_t baud) {
    auto settings = line.settings();
    settings.baud = baud;
    if ((baud <= 0 || !line.set(settings)) && line.works())
        line.warn(fmt::format("the program asks for {}, the port stays at {} baud",
                              baud > 0 ? fmt::format("{} baud", baud) : "a rate without a name",
                              line.settings().baud));
}

void serveTerminal(Session& session, Output& output, const SerialServeOptions& options) {
    PtyDoor door(options.baud, options.link);
    withLine(session, output, options, [&](GuardedLine& line) {
        tellIfAnybodyReads(output, door.place());
        do {
            door.serve(
                [&](Conversation::Send send) { return std::make_unique<PlainSerial>(line, std::move(send)); },
                [&](std::int32_t baud) { followRate(line, baud); });
            line.throwIfFailed();
        } while (!options.once);
    });
}

} // namespace

void SerialServeOptions::describe(OptionList& list) {
    list.add("--rfc2217", rfc2217,
             "Listen for a client of RFC 2217, which sets the line too; port 0 takes a free one",
             {.valueName = "[ADDRESS:]PORT"});
    list.add("--tcp", tcp, "Listen for a client of plain TCP; port 0 takes a free one",
             {.valueName = "[ADDRESS:]PORT"});
    list.add("--pty", pty, "Make a pseudo terminal, for programs that open a serial port");
    list.add("--link", link, "Make a symbolic link to the pseudo terminal here",
             {.kind = ValueKind::file, .needs = {"--pty"}});
    list.add("--once", once, "End when the first client has gone");
    SerialLineOptions::describe(list);
}

void serveSerial(Session& session, Output& output, const SerialServeOptions& options) {
    if (int{!options.rfc2217.empty()} + int{!options.tcp.empty()} + int{options.pty} != 1)
        throw Failure(ExitCode::usage, "one of --rfc2217, --tcp and --pty is needed, and no more");
    if (options.pty)
        serveTerminal(session, output, options);
    else
        serveNetwork(session, output, options);
}

} // namespace TAVO::cli
