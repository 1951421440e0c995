#include <tavo/cli/commands/commands.h>

#include <chrono>
#include <string>
#include <string_view>
#include <vector>

#include <fmt/format.h>

#include <tavo/cli/consent.h>
#include <tavo/cli/files.h>
#include <tavo/cli/interrupt.h>
#include <tavo/cli/output.h>
#include <tavo/cli/progress.h>
#include <tavo/cli/session.h>
#include <tavo/cli/values/duration.h>
#include <tavo/simulator/firmware_store.h>

namespace TAVO::cli {

namespace {

using Clock = std::chrono::steady_clock;
using Seconds = std::chrono::duration<double>;
namespace system_v1_0 = TAVOXTranscode::system_v1_0;
using Status = dto::system::FirmwareStatusReply;
/// The device defines its states: these meanings are those of the simulated appliance.
using State = simulator::FirmwareStore::State;

/// The firmware, and how long to wait for it.
struct StatusOptions {
    std::string name;
    bool wait = false;
    double settle = 10;
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
        list.add("--wait", wait, "Wait for the end of the update");
        const OptionRules rules{.showsDefault = true,
                                .kind = ValueKind::duration,
                                .limits = between(0.001, 1e6),
                                .valueName = "DURATION"};
        list.add("--settle", settle, "Time without progress after which an update counts as stalled", rules);
        list.add("--timeout", timeout, "Time after which the wait fails", rules);
    }
};

struct UpdateOptions : StatusOptions {
    std::string file;
    bool yes = false;

    void describe(OptionList& list) {
        describeName(list);
        list.add("file", file, "The image", {.required = true, .kind = ValueKind::file});
        describeWaiting(list);
        list.add("-y,--yes", yes, "Do not ask for confirmation");
    }
};

bool isIn(const Status& status, State state) { return status.first == static_cast<std::uint32_t>(state); }

/// Empty for a state that is not known.
std::string_view nameOf(const Status& status) {
    for (const auto& [state, name] : {std::pair{State::idle, "none"}, std::pair{State::writing, "updating"},
                                      std::pair{State::done, "done"}, std::pair{State::failed, "failed"}})
        if (isIn(status, state))
            return name;
    return "";
}

std::string textOf(const Status& status) {
    if (isIn(status, State::idle))
        return "no update so far";
    const auto name = nameOf(status);
    return fmt::format("{}, {} %", name.empty() ? fmt::format("state {}", status.first) : std::string(name),
                       status.second);
}

Status statusOf(Session& session, const std::string& name) {
    return session.value(*session.device().getSystem(), system_v1_0::firmwareStatus, name);
}

/// The status, and what is wrong with it.
struct Outcome {
    Status status;
    std::string problem = {};
};

/// Waits for the end of an update. Without one the wait is over at once, unless it was `started` just now.
class Wait {
public:
    Wait(Session& session, const StatusOptions& options, bool started)
        : session_(session)
        , options_(options)
        , started_(started) {}

    Outcome run() {
        for (auto status = statusOf(session_, options_.name);;) {
            if (isOver(status))
                return {status, isIn(status, State::failed) ? "it failed" : ""};
            if (isLongerThan(options_.settle, changed_))
                return {status,
                        fmt::format("it has stalled: no progress in {}", durationText(options_.settle))};
            if (isLongerThan(options_.timeout, start_))
                return {status, fmt::format("it is not done after {}", durationText(options_.timeout))};
            progress_.show(fmt::format("firmware {}: {}", options_.name, textOf(status)));
            InterruptWatch::pause(std::chrono::milliseconds(100));
            const auto next = statusOf(session_, options_.name);
            if (!(next == status))
                changed_ = Clock::now();
            status = next;
        }
    }

private:
    bool isOver(const Status& status) const {
        return isIn(status, State::done) || isIn(status, State::failed) ||
               (isIn(status, State::idle) && !started_);
    }
    static bool isLongerThan(double seconds, Clock::time_point since) {
        return Clock::now() - since > Seconds(seconds);
    }

    Session& session_;
    const StatusOptions& options_;
    bool started_;
    Progress progress_;
    Clock::time_point start_ = Clock::now();
    Clock::time_point changed_ = start_;
};

void show(Output& output, const std::string& name, const Outcome& outcome) {
    const auto& status = outcome.status;
    const auto state = nameOf(status);
    output.show({{"name", name},
                 {"state", state.empty() ? nlohmann::json() : nlohmann::json(state)},
                 {"percent", status.second},
                 {"first", status.first},
                 {"second", status.second}},
                [&](TextWriter& text) { text.print("{}\n", textOf(status)); });
    if (!outcome.problem.empty())
        throw Failure(ExitCode::refused,
                      fmt::format("the update of firmware '{}': {}", name, outcome.problem));
}

void showStatus(Session& session, Output& output, const StatusOptions& options) {
    show(output, options.name,
         options.wait ? Wait(session, options, false).run() : Outcome{statusOf(session, options.name)});
}

void update(Session& session, Output& output, const UpdateOptions& options) {
    const auto image = readImage(options.file);
    const Consent consent(options.yes);
    {
        const auto& system = *session.device().getSystem();
        consent.ask(fmt::format("Replace the firmware '{}' by the {} bytes of '{}'?", options.name,
                                image.size(), options.file));
        Progress progress;
        progress.show(fmt::format("firmware {}: sending {} bytes", options.name, image.size()));
        session.execute(system, system_v1_0::firmwareUpdate, options.name, image);
    }
    if (options.wait)
        show(output, options.name, Wait(session, options, true).run());
    else
        output.show({{"name", options.name}, {"bytes", image.size()}});
}

} // namespace

std::vector<Command> firmwareCommands() {
    return {
        command("firmware update", "Send an image to the device; asks first", update),
        command("firmware status", "Show how far an update is", showStatus),
    };
}

} // namespace TAVO::cli
