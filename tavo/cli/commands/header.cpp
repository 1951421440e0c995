#include <tavo/cli/commands/commands.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <tavo/cli/command_group.h>
#include <tavo/cli/object_choice.h>

namespace TAVO::cli {

namespace {

using nlohmann::json;
using Status = dto::Base::HeaderStatusGetReply;

struct Arguments {
    std::string object;
};

/// The named object, or all that offer the method.
Objects chooseObjects(Session& session, const Arguments& arguments, const std::string& method) {
    if (!arguments.object.empty())
        return {session.find(arguments.object)};
    Objects chosen;
    for (const auto& object : session.objects())
        if (offers(*object, method))
            chosen.push_back(object);
    if (chosen.empty())
        throw Failure(ExitCode::notFound, fmt::format("no object of the device has a method '{}'", method));
    return chosen;
}

json documentOf(const Object_v1_0& object, const Status& status) {
    auto headers = json::array();
    for (const auto& header : status.headers)
        headers.push_back({{"name", header.name},
                           {"connected", header.flag1 != 0},
                           {"changed", header.flag2 != 0},
                           {"error", header.flag3 != 0}});
    auto connections = json::array();
    for (const auto& connection : status.connections)
        connections.push_back({{"host", connection.first}, {"target", connection.second}});
    return {{"object", object.getFullName()},
            {"headers", std::move(headers)},
            {"connections", std::move(connections)}};
}

std::string textOf(const Object_v1_0& object, const Status& status) {
    auto text = object.getFullName() + "\n";
    for (const auto& header : status.headers)
        text +=
            fmt::format("  {:<10}  {}{}{}\n", header.name, header.flag1 != 0 ? "connected" : "not connected",
                        header.flag2 != 0 ? ", changed" : "", header.flag3 != 0 ? ", error" : "");
    for (const auto& [host, target] : status.connections)
        text += fmt::format("  {} -- {}\n", fmt::join(host, ", "), fmt::join(target, ", "));
    return printable(text);
}

void showStatus(Session& session, Output& output, const Arguments& arguments) {
    const auto objects = chooseObjects(session, arguments, "headerStatusGet");
    std::vector<std::shared_ptr<BoundMethod<Status>>> calls;
    for (const auto& object : objects)
        calls.push_back(callOf<Status>(*object, "headerStatusGet"));
    session.runAll({calls.begin(), calls.end()});
    auto documents = json::array();
    std::string text;
    for (std::size_t i = 0; i < objects.size(); ++i) {
        const auto status = calls[i]->value();
        documents.push_back(documentOf(*objects[i], status));
        text += textOf(*objects[i], status);
    }
    output.show(documents, text);
}

void clearStatus(Session& session, Output& output, const Arguments& arguments) {
    const auto objects = chooseObjects(session, arguments, "headerStatusClear");
    std::vector<std::shared_ptr<Method>> calls;
    auto names = json::array();
    for (const auto& object : objects) {
        calls.push_back(callOf(*object, "headerStatusClear"));
        names.push_back(object->getFullName());
    }
    session.runAll(calls);
    output.show({{"cleared", names}}, "");
}

} // namespace

void addHeader(CLI::App& tool, Program& program) {
    CommandGroup<Arguments> header(tool, program, "header", "Look at the debug headers");
    header.group().add_option("--object", header.arguments().object,
                              "Full name of the object whose headers are meant, all unless given");
    header.add("status", "The headers, and where they lead", showStatus);
    header.add("clear", "Forget the changes and errors of headers", clearStatus);
}

} // namespace TAVO::cli
