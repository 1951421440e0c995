#include <tavo/cli/commands/commands.h>

#include <string>
#include <string_view>

#include <tavo/cli/object_choice.h>
#include <tavo/cli/output.h>

namespace TAVO::cli {

namespace {

namespace cfa633_v1_0 = CommonModules::TAVOXTranscode::cfa633_v1_0;

auto displayOf(Session& session, const ObjectOptions& options) {
    return chooseObject<CommonModules::Cfa633_v1_0>(session, options.object, "display");
}

void showDone(Output& output, const Object_v1_0& display) {
    output.show({{"object", display.getFullName()}, {"returnCode", 0}});
}

struct PrintOptions : ObjectOptions {
    std::string text;
    int row = 0;
    int column = 0;

    void describe(OptionList& list) {
        list.add("text", text, "The text; -- before one that begins with -", {.required = true});
        list.add("--row", row, "0 is the top row", {.showsDefault = true});
        list.add("--column", column, "0 is the leftmost column", {.showsDefault = true});
    }
};

void print(Session& session, Output& output, const PrintOptions& options) {
    const auto display = displayOf(session, options);
    session.execute(display->getLcdPrintMethod(options.row, options.column, options.text));
    showDone(output, *display);
}

void clear(Session& session, Output& output, const ObjectOptions& options) {
    const auto display = displayOf(session, options);
    session.execute(*display, cfa633_v1_0::lcdClear);
    showDone(output, *display);
}

struct BacklightOptions : ObjectOptions {
    int level = 0;

    void describe(OptionList& list) {
        list.add("level", level, "Brightness, as the device defines it; often 0 to 100", {.required = true});
    }
};

void setBacklight(Session& session, Output& output, const BacklightOptions& options) {
    const auto display = displayOf(session, options);
    session.execute(*display, cfa633_v1_0::lcdBackLight, options.level);
    showDone(output, *display);
}

/// Keeps the line ends: with no other output around it, the text cannot forge a line.
void writeLines(TextWriter& text, std::string_view info) {
    for (;;) {
        const auto line = info.substr(0, info.find('\n'));
        text.print("{}\n", line);
        if (line.size() == info.size())
            return;
        info.remove_prefix(line.size() + 1);
    }
}

void show(Session& session, Output& output, const ObjectOptions& options) {
    const auto display = displayOf(session, options);
    const auto info = session.value(*display, TAVOXTranscode::base_v1_0::available).info;
    output.show(
        [&](JsonWriter& json) {
            json.object([&] {
                json.key("info").exactText(info);
                json.key("object").text(display->getFullName());
            });
        },
        [&](TextWriter& text) { writeLines(text, info); });
}

} // namespace

std::vector<Command> lcdCommands() {
    return {
        command("lcd print", "Write a text", print),
        command("lcd clear", "Clear the display", clear),
        command("lcd backlight", "Set the backlight", setBacklight),
        command("lcd show", "Show what the device reports about the display; some report its text", show),
    };
}

} // namespace TAVO::cli
