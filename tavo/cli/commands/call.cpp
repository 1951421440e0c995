#include <tavo/cli/commands/commands.h>

#include <memory>
#include <string>
#include <vector>

#include <tavo/cli/prepared_call.h>

namespace TAVO::cli {

namespace {

void makeCall(Session& session, Output& output, const std::vector<std::string>& words) {
    const auto parsed = parseCall(words);
    const auto call = prepareCall(session, parsed);
    session.run({call.method});
    output.show([&](JsonWriter& json) { json.object([&] { writeResult(json, call); }); },
                [&](TextWriter& text) { writeResult(text, call); });
    requireSuccess(*call.method);
}

} // namespace

void addCall(CLI::App& tool, Program& program) {
    auto* command = tool.add_subcommand("call", "Call any method of any object");
    const auto words = std::make_shared<std::vector<std::string>>();
    command->add_option("call", *words, "OBJECT.METHOD [name=value ...]")->required();
    command->footer(
        "Objects go by their full names, such as group.relay1. Values: true, false, 1 or 0 for a\n"
        "flag; decimal or 0x... for a number; pairs of hexadecimal digits for bytes; JSON for lists\n"
        "and records; a text stands for itself. 'tavo tree --methods' shows what there is.");
    command->callback([&program, words] {
        program.action = [words](Session& session, Output& output) { makeCall(session, output, *words); };
    });
}

} // namespace TAVO::cli
