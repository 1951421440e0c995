#include <tavo/cli/commands/commands.h>

#include <string>

#include <fmt/format.h>

namespace TAVO::cli {

namespace {

using Descriptor = Device_Factory_Structs::TavoDeviceDescriptor;

nlohmann::json documentOf(const DeviceInfo& info, const Descriptor& descriptor) {
    auto firmware = nlohmann::json::array();
    for (const auto& part : info.firmware)
        firmware.push_back({{"name", part.name}, {"version", part.version.text}});
    auto boards = nlohmann::json::array();
    for (const auto& board : info.boards)
        boards.push_back({{"field1", board.field1},
                          {"field2", board.field2},
                          {"field3", board.field3},
                          {"field4", board.field4}});
    return {{"name", info.name},       {"version", info.version.text},
            {"port", descriptor.port}, {"keyFlags", {descriptor.firstKeyFlag, descriptor.secondKeyFlag}},
            {"firmware", firmware},    {"boards", boards}};
}

std::string textOf(const DeviceInfo& info, const Descriptor& descriptor) {
    auto text =
        fmt::format("name       {}\nversion    {}\nport       {}\nkey flags  {:d} {:d}\n", info.name,
                    info.version.text, descriptor.port, descriptor.firstKeyFlag, descriptor.secondKeyFlag);
    for (const auto& part : info.firmware)
        text += fmt::format("firmware   {} {}\n", part.name, part.version.text);
    for (const auto& board : info.boards)
        text += fmt::format("board      {} | {} | {} | {}\n", board.field1, board.field2, board.field3,
                            board.field4);
    return printable(text);
}

void showInfo(Session& session, Output& output) {
    Descriptor descriptor;
    const auto method = session.identify(descriptor).getDevice()->getInfoMethod();
    const DeviceInfo info(session.value(method));
    output.show(documentOf(info, descriptor), textOf(info, descriptor));
}

} // namespace

void addInfo(CLI::App& tool, Program& program) {
    auto* command = tool.add_subcommand("info", "Show what the device is, without taking its lock");
    command->callback([&program] { program.action = showInfo; });
}

} // namespace TAVO::cli
