#include <tavo/cli/commands/commands.h>

#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include <fmt/format.h>

#include <tavo/cli/files.h>
#include <tavo/cli/interrupt.h>
#include <tavo/cli/progress.h>

namespace TAVO::cli {

namespace {

using Clock = std::chrono::steady_clock;
using Seconds = std::chrono::duration<double>;
using Status = dto::system::FirmwareStatusReply;

struct Arguments {
    std::string name;
    std::string file;
    bool wait = false;
    double settle = 2;
    double timeout = 600;
};

Status statusOf(Session& session, const std::string& name) {
    return session.value(session.device().getSystem()->getFirmwareStatusMethod(name));
}

/// What the two numbers mean is the device's to define, so all that can be seen is that they rest.
Status waitUntilSettled(Session& session, const Arguments& arguments) {
    Progress progress;
    const auto start = Clock::now();
    auto status = statusOf(session, arguments.name);
    for (auto changed = start; Clock::now() - changed < Seconds(arguments.settle);) {
        if (Clock::now() - start > Seconds(arguments.timeout))
            throw Failure(ExitCode::refused,
                          fmt::format("the status of firmware '{}' still changes after {} s: {} {}",
                                      arguments.name, arguments.timeout, status.first, status.second));
        progress.show(fmt::format("firmware {}: {} {}", arguments.name, status.first, status.second));
        InterruptWatch::pause(std::chrono::milliseconds(100));
        const auto next = statusOf(session, arguments.name);
        if (!(next == status))
            changed = Clock::now();
        status = next;
    }
    return status;
}

void showStatus(Session& session, Output& output, const Arguments& arguments) {
    const auto status =
        arguments.wait ? waitUntilSettled(session, arguments) : statusOf(session, arguments.name);
    output.show({{"name", arguments.name}, {"first", status.first}, {"second", status.second}},
                [&](TextWriter& text) { text.print("{} {}\n", status.first, status.second); });
}

void update(Session& session, Output& output, const Arguments& arguments) {
    const auto content = readFile(arguments.file);
    const std::vector<unsigned char> image(content.begin(), content.end());
    {
        auto& system = *session.device().getSystem();
        Progress progress;
        progress.show(fmt::format("firmware {}: sending {} bytes", arguments.name, image.size()));
        session.execute(system.getFirmwareUpdateMethod(arguments.name, image));
    }
    if (arguments.wait)
        showStatus(session, output, arguments);
    else
        output.show({{"name", arguments.name}, {"bytes", image.size()}});
}

void addWaiting(CLI::App* command, const std::shared_ptr<Arguments>& arguments) {
    command->add_flag("--wait", arguments->wait, "Read the status until its two numbers rest");
    command->add_option("--settle", arguments->settle, "How many seconds they rest")
        ->check(CLI::PositiveNumber)
        ->capture_default_str();
    command->add_option("--timeout", arguments->timeout, "After how many seconds the waiting fails")
        ->check(CLI::PositiveNumber)
        ->capture_default_str();
}

} // namespace

void addFirmware(CLI::App& tool, Program& program) {
    auto* firmware = tool.add_subcommand("firmware", "Update the device's firmware");
    firmware->require_subcommand(1);
    const auto arguments = std::make_shared<Arguments>();
    const auto add = [&](const char* name, const char* description,
                         void (*action)(Session&, Output&, const Arguments&)) {
        auto* command = firmware->add_subcommand(name, description);
        command->add_option("name", arguments->name, "Which firmware, as the device calls it")->required();
        command->callback([&program, arguments, action] {
            program.action = [arguments, action](Session& session, Output& output) {
                action(session, output, *arguments);
            };
        });
        return command;
    };
    auto* updating = add("update", "Send an image to the device", update);
    updating->add_option("file", arguments->file, "The image")->required();
    addWaiting(updating, arguments);
    addWaiting(add("status", "The two numbers of an update's status, the device's to define", showStatus),
               arguments);
}

} // namespace TAVO::cli
