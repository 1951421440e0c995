#include <tavo/cli/commands/commands.h>

#include <string>
#include <vector>

#include <tavo/cli/output.h>
#include <tavo/cli/prepared_call.h>

namespace TAVO::cli {

namespace {

struct CallOptions {
    std::vector<std::string> words;

    void describe(OptionList& list) {
        list.add("call", words, "OBJECT.METHOD [name=value ...]",
                 {.required = true, .nameKind = NameKind::method});
    }
};

void makeCall(Session& session, Output& output, const CallOptions& options) {
    const auto parsed = parseCall(options.words);
    const auto call = prepareCall(session.findOnly(parsed.object), parsed);
    session.run({call.method});
    output.show([&](JsonWriter& json) { json.object([&] { writeResult(json, call); }); },
                [&](TextWriter& text) { writeResult(text, call); });
    requireSuccess(*call.method);
}

} // namespace

std::vector<Command> callCommands() {
    return {
        command("call", "Call any method of any object", makeCall,
                "Name objects in full, such as group.relay1. Values: true, false, 1 or 0 for a\n"
                "flag; decimal or 0x... for a number; pairs of hexadecimal digits for bytes; JSON for lists\n"
                "and records; a text as it is. 'tavo tree --methods' lists all methods.")};
}

} // namespace TAVO::cli
