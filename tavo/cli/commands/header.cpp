#include <tavo/cli/commands/commands.h>

#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <tavo/cli/follow.h>
#include <tavo/cli/object_choice.h>
#include <tavo/cli/output.h>

namespace TAVO::cli {

namespace {

using namespace TAVOXTranscode::headerStatus_v1_1;
using Status = dto::Base::HeaderStatusGetReply;

/// The named object, or all objects that offer the method.
Objects chooseObjects(Session& session, const ObjectOptions& options, std::string_view method) {
    const auto suits = [method](const Object_v1_0& object) { return offers(object, method); };
    if (!options.object.empty()) {
        auto named = session.findOnly(options.object);
        if (suits(*named))
            return {named};
        named.reset(); // else the device could not be opened anew
        throw Failure(ExitCode::notFound,
                      fmt::format("{} has no method '{}'; of objects that have it {}", options.object, method,
                                  candidatesText(session, suits)));
    }
    Objects chosen;
    for (const auto& object : session.objects())
        if (suits(*object))
            chosen.push_back(object);
    if (chosen.empty())
        throw Failure(ExitCode::notFound, fmt::format("no object of the device has a method '{}'", method));
    return chosen;
}

struct StatusOptions : ObjectOptions {
    bool follow = false;
    Pace pace;

    void describe(OptionList& list) {
        list.add("--follow", follow, "Go on with a line for each change");
        pace.describe(list, {"--follow"});
    }
};

std::string flagsText(const dto::Base::Header& header) {
    return fmt::format("{}{}{}", header.flag1 != 0 ? "connected" : "not connected",
                       header.flag2 != 0 ? ", changed" : "", header.flag3 != 0 ? ", error" : "");
}

void writeNames(JsonWriter& json, const std::vector<std::string>& names) {
    json.array([&] {
        for (const auto& name : names)
            json.text(name);
    });
}

void write(JsonWriter& json, const Object_v1_0& object, const Status& status) {
    json.key("connections").array([&] {
        for (const auto& [host, target] : status.connections)
            json.object([&, &host = host, &target = target] {
                writeNames(json.key("host"), host);
                writeNames(json.key("target"), target);
            });
    });
    json.key("headers").array([&] {
        for (const auto& header : status.headers)
            json.object([&] {
                json.key("changed").flag(header.flag2 != 0);
                json.key("connected").flag(header.flag1 != 0);
                json.key("error").flag(header.flag3 != 0);
                json.key("name").text(header.name);
            });
    });
    json.key("object").text(object.getFullName());
}

void writeNames(TextWriter& text, const std::vector<std::string>& names) {
    const char* separator = "";
    for (const auto& name : names)
        text.print("{}{}", std::exchange(separator, ", "), name);
}

void write(TextWriter& text, const Object_v1_0& object, const Status& status) {
    text.print("{}\n", object.getFullName());
    for (const auto& header : status.headers)
        text.print("  {:<10}  {}\n", header.name, flagsText(header));
    for (const auto& [host, target] : status.connections) {
        text.write("  ");
        writeNames(text, host);
        text.write(" -- ");
        writeNames(text, target);
        text.write("\n");
    }
}

using StatusCalls = std::vector<std::shared_ptr<BoundMethod<Status>>>;

/// Asks all objects, in one exchange.
StatusCalls askAll(Session& session, const Objects& objects) {
    StatusCalls calls;
    for (const auto& object : objects)
        calls.push_back(callOf(*object, headerStatusGet));
    session.runAll({calls.begin(), calls.end()});
    return calls;
}

/// A line for each header, and one for what the object's cables connect.
void showChanges(Changes& changes, const std::string& object, const Status& status) {
    for (const auto& header : status.headers)
        changes.show(object + '\n' + header.name,
                     {{"object", object},
                      {"name", header.name},
                      {"connected", header.flag1 != 0},
                      {"changed", header.flag2 != 0},
                      {"error", header.flag3 != 0}},
                     fmt::format("{}  {:<10}  {}", object, header.name, flagsText(header)));
    auto connections = nlohmann::json::array();
    std::vector<std::string> texts;
    for (const auto& [host, target] : status.connections) {
        connections.push_back({{"host", host}, {"target", target}});
        texts.push_back(fmt::format("{} -- {}", fmt::join(host, ", "), fmt::join(target, ", ")));
    }
    changes.show(object, {{"object", object}, {"connections", std::move(connections)}},
                 fmt::format("{}  connections: {}", object, fmt::join(texts, "; ")));
}

void followStatus(Session& session, Output& output, const Objects& objects, const Pace& pace) {
    Changes changes(output);
    lookRepeatedly(pace, [&] {
        const auto calls = askAll(session, objects);
        for (std::size_t i = 0; i < objects.size(); ++i)
            showChanges(changes, objects[i]->getFullName(), calls[i]->take());
        return false;
    });
}

void showStatus(Session& session, Output& output, const StatusOptions& options) {
    const auto objects = chooseObjects(session, options, headerStatusGet.name);
    if (options.follow) {
        followStatus(session, output, objects, options.pace);
        return;
    }
    const auto calls = askAll(session, objects);
    output.show(
        [&](JsonWriter& json) {
            json.array([&] {
                for (std::size_t i = 0; i < objects.size(); ++i)
                    json.object([&] { write(json, *objects[i], calls[i]->take()); });
            });
        },
        [&](TextWriter& text) {
            for (std::size_t i = 0; i < objects.size(); ++i)
                write(text, *objects[i], calls[i]->take());
        });
}

void clearStatus(Session& session, Output& output, const ObjectOptions& options) {
    const auto objects = chooseObjects(session, options, headerStatusClear.name);
    std::vector<std::shared_ptr<Method>> calls;
    for (const auto& object : objects)
        calls.push_back(callOf(*object, headerStatusClear));
    session.runAll(calls);
    output.show(
        [&](JsonWriter& json) {
            json.object([&] {
                json.key("cleared").array([&] {
                    for (const auto& object : objects)
                        json.text(object->getFullName());
                });
            });
        },
        [](TextWriter&) {});
}

} // namespace

std::vector<Command> headerCommands() {
    return {
        command("header status", "Show the headers and what they connect to", showStatus),
        command("header clear", "Clear the changed and error flags", clearStatus),
    };
}

} // namespace TAVO::cli
