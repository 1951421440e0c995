#include <tavo/cli/commands/commands.h>

#include <chrono>
#include <cmath>
#include <memory>
#include <optional>
#include <string>

#include <tavo/cli/output.h>
#include <tavo/cli/session.h>
#include <tavo/cli/share/listen_address.h>
#include <tavo/cli/share/share.h>

namespace TAVO::cli {

namespace {

struct ShareOptions {
    std::string listen = "127.0.0.1:0";
    std::optional<double> idle;
    std::string log;

    void describe(OptionList& list) {
        list.add("--listen", listen,
                 "Where to listen, besides the socket for programs of this user; port 0 takes a free one",
                 {.showsDefault = true, .valueName = "[ADDRESS:]PORT"});
        list.add("--idle", idle,
                 "Give the lock back when there was no client for that long, such as 10m,\n"
                 "and take it again for the next one; default: keep it",
                 {.kind = ValueKind::duration, .limits = between(0.001, 1e6), .valueName = "DURATION"});
        list.add("--log", log, "Add who called what, when and how long to this file, as lines of JSON",
                 {.kind = ValueKind::file});
    }
};

std::chrono::milliseconds millisecondsOf(double seconds) {
    return std::chrono::milliseconds(std::llround(seconds * 1000));
}

/// A share goes on for its clients when the one who started it has gone.
void tellIfAnybodyReads(Output& output, const std::string& line) {
    try {
        output.write(line + "\n");
        output.finish();
    } catch (const std::exception&) { // nobody can be told
    }
}

void share(Session& session, Output& output, const ShareOptions& options) {
    const auto address = parseListenAddress(options.listen);
    const auto account = session.account();
    ShareSettings settings{address.host, address.port, session.sharePath(), std::nullopt, options.log};
    if (options.idle)
        settings.idle = millisecondsOf(*options.idle);
    DeviceLine::Access access;
    access.open = [&] { return std::dynamic_pointer_cast<TAVOXDevice>(session.openApart(account)); };
    access.interrupt = [&session] { session.interruptOpening(); };
    if (const auto limit = session.timeLimit())
        access.patience = *limit;
    session.watchSignals();
    Share(settings, account, access, [&output](const std::string& line) {
        tellIfAnybodyReads(output, line);
    }).run();
}

} // namespace

std::vector<Command> shareCommands() {
    return {command("share", "Share one connection and its lock among many programs", share)};
}

} // namespace TAVO::cli
