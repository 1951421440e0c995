#include <tavo/cli/commands/commands.h>

#include <chrono>
#include <string>
#include <vector>

#include <fmt/format.h>

#include <tavo/cli/files.h>
#include <tavo/cli/interrupt.h>
#include <tavo/cli/output.h>
#include <tavo/cli/progress.h>
#include <tavo/cli/session.h>
#include <tavo/cli/values/duration.h>

namespace TAVO::cli {

namespace {

using Clock = std::chrono::steady_clock;
using Seconds = std::chrono::duration<double>;
namespace system_v1_0 = TAVOXTranscode::system_v1_0;
using Status = dto::system::FirmwareStatusReply;

/// The firmware, and how long to wait for it.
struct StatusOptions {
    std::string name;
    bool wait = false;
    double settle = 2;
    double timeout = 600;

    void describe(OptionList& list) {
        describeName(list);
        describeWaiting(list);
    }

protected:
    void describeName(OptionList& list) {
        list.add("name", name, "Name of the firmware on the device", {.required = true});
    }
    void describeWaiting(OptionList& list) {
        list.add("--wait", wait, "Read the status until its two numbers stop changing");
        const OptionRules rules{.showsDefault = true,
                                .kind = ValueKind::duration,
                                .limits = between(0.001, 1e6),
                                .valueName = "DURATION"};
        list.add("--settle", settle, "Time without a change that ends the wait", rules);
        list.add("--timeout", timeout, "Time after which the wait fails", rules);
    }
};

struct UpdateOptions : StatusOptions {
    std::string file;

    void describe(OptionList& list) {
        describeName(list);
        list.add("file", file, "The image", {.required = true, .kind = ValueKind::file});
        describeWaiting(list);
    }
};

Status statusOf(Session& session, const std::string& name) {
    return session.value(*session.device().getSystem(), system_v1_0::firmwareStatus, name);
}

/// The device defines what the two numbers mean. All we can see is that they stop changing.
Status waitUntilSettled(Session& session, const StatusOptions& options) {
    Progress progress;
    const auto start = Clock::now();
    auto status = statusOf(session, options.name);
    for (auto changed = start; Clock::now() - changed < Seconds(options.settle);) {
        if (Clock::now() - start > Seconds(options.timeout))
            throw Failure(ExitCode::refused,
                          fmt::format("the status of firmware '{}' still changes after {}: {} {}",
                                      options.name, durationText(options.timeout), status.first,
                                      status.second));
        progress.show(fmt::format("firmware {}: {} {}", options.name, status.first, status.second));
        InterruptWatch::pause(std::chrono::milliseconds(100));
        const auto next = statusOf(session, options.name);
        if (!(next == status))
            changed = Clock::now();
        status = next;
    }
    return status;
}

void showStatus(Session& session, Output& output, const StatusOptions& options) {
    const auto status = options.wait ? waitUntilSettled(session, options) : statusOf(session, options.name);
    output.show({{"name", options.name}, {"first", status.first}, {"second", status.second}},
                [&](TextWriter& text) { text.print("{} {}\n", status.first, status.second); });
}

void update(Session& session, Output& output, const UpdateOptions& options) {
    const auto content = readFile(options.file);
    const std::vector<unsigned char> image(content.begin(), content.end());
    {
        const auto& system = *session.device().getSystem();
        Progress progress;
        progress.show(fmt::format("firmware {}: sending {} bytes", options.name, image.size()));
        session.execute(system, system_v1_0::firmwareUpdate, options.name, image);
    }
    if (options.wait)
        showStatus(session, output, options);
    else
        output.show({{"name", options.name}, {"bytes", image.size()}});
}

} // namespace

std::vector<Command> firmwareCommands() {
    return {
        command("firmware update", "Send an image to the device", update),
        command("firmware status", "Show the two numbers of an update's status; the device defines them",
                showStatus),
    };
}

} // namespace TAVO::cli
