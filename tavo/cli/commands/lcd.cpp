#include <tavo/cli/commands/commands.h>

#include <memory>
#include <string>
#include <string_view>

#include <tavo/cli/command_group.h>
#include <tavo/cli/object_choice.h>

namespace TAVO::cli {

namespace {

struct Arguments {
    std::string object;
    std::string text;
    int row = 0;
    int column = 0;
    int level = 0;
};

std::shared_ptr<CommonModules::Cfa633_v1_0> displayOf(Session& session, const Arguments& arguments) {
    return chooseObject<CommonModules::Cfa633_v1_0>(session, arguments.object, "display");
}

void executeAndShow(Session& session, Output& output, const std::shared_ptr<Method>& method) {
    session.execute(method);
    output.show({{"object", method->getContainer().getFullName()}, {"returnCode", method->returnCode()}});
}

void print(Session& session, Output& output, const Arguments& arguments) {
    const auto display = displayOf(session, arguments);
    executeAndShow(session, output,
                   display->getLcdPrintMethod(arguments.row, arguments.column, arguments.text));
}

void clear(Session& session, Output& output, const Arguments& arguments) {
    const auto display = displayOf(session, arguments);
    executeAndShow(session, output, display->getLcdClearMethod());
}

void setBacklight(Session& session, Output& output, const Arguments& arguments) {
    const auto display = displayOf(session, arguments);
    executeAndShow(session, output, display->getLcdBackLightMethod(arguments.level));
}

/// With its line ends, which forge nothing where no other words stand.
void writeLines(TextWriter& text, std::string_view info) {
    for (;;) {
        const auto line = info.substr(0, info.find('\n'));
        text.print("{}\n", line);
        if (line.size() == info.size())
            return;
        info.remove_prefix(line.size() + 1);
    }
}

void show(Session& session, Output& output, const Arguments& arguments) {
    const auto display = displayOf(session, arguments);
    const auto available = display->getAvailableMethod();
    session.execute(available);
    const auto info = available->take().info;
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

void addLcd(CLI::App& tool, Program& program) {
    CommandGroup<Arguments> lcd(tool, program, "lcd", "The display of the device");
    auto& arguments = lcd.arguments();
    lcd.group().add_option("--object", arguments.object,
                           "Full name of the display; not needed where there is only one");

    auto* printing = lcd.add("print", "Write a text", print);
    printing->add_option("text", arguments.text, "The text; -- before one that begins with -")->required();
    printing->add_option("--row", arguments.row, "0 is the upper one")->capture_default_str();
    printing->add_option("--column", arguments.column, "0 is the leftmost one")->capture_default_str();

    lcd.add("clear", "Clear the display", clear);
    lcd.add("backlight", "Set the backlight", setBacklight)
        ->add_option("level", arguments.level, "How bright, the device's to define; often 0 to 100")
        ->required();
    lcd.add("show", "What the device tells about itself, on some the text of the display", show);
}

} // namespace TAVO::cli
