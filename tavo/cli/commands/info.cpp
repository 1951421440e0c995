#include <tavo/cli/commands/commands.h>

#include <tavo/cli/output.h>
#include <tavo/cli/session.h>

namespace TAVO::cli {

namespace {

using Info = dto::Device::InfoReply;
using Descriptor = Device_Factory_Structs::TavoDeviceDescriptor;

/// @param known whether the device has a known key, to which the flags belong.
void write(JsonWriter& json, const Info& info, const Descriptor& descriptor, bool known) {
    json.key("boards").array([&] {
        for (const auto& board : info.boards)
            json.object([&] {
                json.key("field1").text(board.field1);
                json.key("field2").text(board.field2);
                json.key("field3").text(board.field3);
                json.key("field4").text(board.field4);
            });
    });
    json.key("firmware").array([&] {
        for (const auto& part : info.firmware)
            json.object([&] {
                json.key("name").text(part.name);
                json.key("version").text(Version(part.version).text);
            });
    });
    json.key("keyFlags");
    if (known)
        json.write({descriptor.firstKeyFlag, descriptor.secondKeyFlag});
    else
        json.null();
    json.key("name").text(info.name);
    json.key("port").number(descriptor.port);
    json.key("version").text(Version(info.version).text);
}

void write(TextWriter& text, const Info& info, const Descriptor& descriptor, bool known) {
    text.print("name       {}\nversion    {}\nport       {}\n", info.name, Version(info.version).text,
               descriptor.port);
    if (known)
        text.print("key flags  {:d} {:d}\n", descriptor.firstKeyFlag, descriptor.secondKeyFlag);
    else
        text.print("key        unknown\n");
    for (const auto& part : info.firmware)
        text.print("firmware   {} {}\n", part.name, Version(part.version).text);
    for (const auto& board : info.boards)
        text.print("board      {} | {} | {} | {}\n", board.field1, board.field2, board.field3, board.field4);
}

void showInfo(Session& session, Output& output) {
    Descriptor descriptor;
    const bool known = session.identify(descriptor);
    const auto info = session.value(*session.device().getDevice(), TAVOXTranscode::device_v1_0::info);
    output.show([&](JsonWriter& json) { json.object([&] { write(json, info, descriptor, known); }); },
                [&](TextWriter& text) { write(text, info, descriptor, known); });
    if (!known)
        throw Failure(ExitCode::notAuthorised,
                      "key not among the known ones, see TAVO_SERVER_KEYS_FILE in README.md");
}

} // namespace

std::vector<Command> infoCommands() {
    return {command("info", "Identify the device, without taking its lock", showInfo)};
}

} // namespace TAVO::cli
