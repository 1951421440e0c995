#include <tavo/cli/commands/commands.h>

#include <optional>
#include <string>
#include <vector>

#include <tavo/cli/child_process.h>
#include <tavo/cli/output.h>
#include <tavo/cli/session.h>
#include <tavo/cli/values/visible_text.h>

namespace TAVO::cli {

namespace {

constexpr InterruptWatch::Milliseconds pauseBetweenQuestions{500};

void showStatus(Session& session, Output& output) {
    const auto holder = session.lockHolder();
    output.show({{"locked", holder.has_value()}, {"user", holder ? nlohmann::json(*holder) : nullptr}},
                [&](TextWriter& text) {
                    if (holder)
                        text.print("locked by {}\n", visible(*holder));
                    else
                        text.print("not locked\n");
                });
}

struct HoldOptions {
    std::vector<std::string> command;

    void describe(OptionList& list) {
        list.add("command", command,
                 "Hold the lock while this command runs, and end with its exit status; after --");
    }
};

void hold(Session& session, Output& output, const HoldOptions& options) {
    session.device();
    if (options.command.empty()) {
        output.print([&](TextWriter& text) { text.print("holding the lock of {}\n", session.address()); });
        for (;;)
            InterruptWatch::pause(InterruptWatch::Milliseconds(3600000));
    }
    const auto status = runProgram(options.command);
    if (status != 0)
        throw EndWith(status);
}

void wait(Session& session, Output&) {
    while (session.lockHolder())
        InterruptWatch::pause(pauseBetweenQuestions);
}

void release(Session& session, Output&) { session.device().unlock(); }

} // namespace

std::vector<Command> lockCommands() {
    return {
        command("lock status", "Show who holds the lock, without taking it", showStatus),
        command("lock hold", "Hold the lock until Ctrl-C, or while a command runs", hold),
        command("lock wait", "Wait until nobody holds the lock", wait),
        command("lock release", "Give back a lock that the user holds", release),
    };
}

} // namespace TAVO::cli
