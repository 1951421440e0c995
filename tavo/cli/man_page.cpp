#include <tavo/cli/man_page.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <optional>
#include <stdexcept>

#include <fmt/format.h>

#include <tavo/cli/child_process.h>
#include <tavo/cli/command_list.h>
#include <tavo/cli/failure.h>
#include <tavo/cli/interrupt.h>
#include <tavo/cli/mdoc.h>
#include <tavo/cli/option_text.h>
#include <tavo/cli/program.h>
#include <tavo/client/version_number.h>

namespace TAVO::cli {

namespace {

std::string pageNameOf(const std::string& path) { return "tavo-" + path; }

std::string summaryOf(const std::string& path) {
    if (const auto group = findGroup(path))
        return group->summary;
    return findCommand(path).value().summary;
}

/// As a part of a sentence.
std::string lowered(std::string summary) {
    const bool isAbbreviation = summary.size() > 1 && std::isupper(static_cast<unsigned char>(summary[1]));
    if (!isAbbreviation)
        summary[0] = static_cast<char>(std::tolower(static_cast<unsigned char>(summary[0])));
    return summary;
}

std::string upperCase(std::string text) {
    for (auto& c : text)
        c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return text;
}

/// "2024-05-06" as "May 6, 2024".
std::string dateText(const std::string& date) {
    constexpr std::array months{"January", "February", "March",     "April",   "May",      "June",
                                "July",    "August",   "September", "October", "November", "December"};
    const auto number = [&](std::size_t at, std::size_t length) {
        unsigned value = 0;
        const auto* end = date.data() + at + length;
        const auto [stop, error] = std::from_chars(date.data() + at, end, value);
        return error == std::errc() && stop == end ? value : 0;
    };
    const bool isWritten = date.size() == 10 && date[4] == '-' && date[7] == '-';
    const auto month = isWritten ? number(5, 2) : 0;
    const auto day = isWritten ? number(8, 2) : 0;
    if (!isWritten || number(0, 4) == 0 || month < 1 || month > 12 || day < 1 || day > 31)
        throw std::invalid_argument(fmt::format("'{}' is no date such as 2024-05-06", date));
    return fmt::format("{} {}, {}", months[month - 1], day, number(0, 4));
}

/// "Fl y , Fl \-yes Ar FILE"
std::string markupOf(const Option& option) {
    if (option.isArgument())
        return "Ar " + Mdoc::argument(valueText(option));
    std::string markup;
    for (const auto& name : namesOf(option))
        markup += fmt::format("{}Fl {}", markup.empty() ? "" : " , ", Mdoc::argument(name.substr(1)));
    const auto value = valueText(option);
    return value.empty() ? markup : markup + " Ar " + Mdoc::argument(value);
}

/// A page as far as it has been written.
class Page {
public:
    Page(const std::string& name, const std::string& date, const std::string& summary) {
        out_.macro("Dd " + dateText(date));
        out_.macro("Dt " + Mdoc::argument(upperCase(name)) + " 1");
        out_.macro("Os " + Mdoc::argument(fmt::format("tavo {}", ClientLibraryVersion)));
        out_.section("NAME");
        out_.macro("Nm " + Mdoc::argument(name));
        out_.macro("Nd " + Mdoc::argument(lowered(summary)));
    }

    Mdoc& out() { return out_; }
    std::string take() && { return out_.page(); }

    void synopsisOf(const Command& command) {
        const auto bound = command.bind();
        out_.macro("Nm " + Mdoc::argument("tavo " + command.path));
        for (const auto& option : bound.options)
            if (!option.isArgument())
                out_.macro((option.rules.required ? "" : "Op ") + markupOf(option));
        for (const auto& option : bound.options)
            if (option.isArgument())
                out_.macro((option.rules.required ? "" : "Op ") + markupOf(option) +
                           (option.isRepeated() ? " ..." : ""));
    }

    void item(const std::string& markup, const std::string& text) {
        out_.macro("It " + markup);
        out_.text(text);
    }
    template <class Write>
    void list(Write write) {
        out_.macro("Bl -tag -width Ds");
        write();
        out_.macro("El");
    }
    template <class Matches>
    void options(const OptionList& options, Matches matches) {
        if (std::none_of(options.begin(), options.end(), matches))
            return;
        list([&] {
            for (const auto& option : options)
                if (matches(option))
                    item(markupOf(option), option.help + limitsText(option));
        });
    }

    void tell(const Command& command) {
        out_.text(command.summary + ".");
        const auto bound = command.bind();
        options(bound.options, [](const Option& option) { return option.isArgument(); });
        options(bound.options, [](const Option& option) { return !option.isArgument(); });
        if (command.footer.empty())
            return;
        out_.macro("Pp");
        out_.text(command.footer);
    }

private:
    Mdoc out_;
};

/// The commands that a page tells of.
std::vector<Command> commandsBelow(const std::string& path) {
    std::vector<Command> commands;
    for (auto& command : commandList())
        if (command.path == path || command.path.starts_with(path + ' '))
            commands.push_back(std::move(command));
    return commands;
}

/// --object, where a group takes one, and where the other options are told of.
void writeOptionsFromAbove(Page& page, const std::string& path, const std::vector<Command>& commands) {
    const bool needsDevice = std::any_of(commands.begin(), commands.end(),
                                         [](const auto& command) { return command.bind().run != nullptr; });
    const auto group = findGroup(path);
    auto& out = page.out();
    out.section("OPTIONS");
    page.list([&] {
        if (group && !group->object.empty())
            page.item("Fl " + Mdoc::argument("-object") + " Ar NAME", group->object);
        page.item("Fl h , Fl " + Mdoc::argument("-help"), "Print a help text and exit");
    });
    out.macro("Pp");
    out.text(needsDevice ? "The options of the connection and --json are those of"
                         : "The options that stand beside every command are those of");
    out.macro("Xr tavo 1 ;");
    out.text("all may stand before or after the command.");
}

ManPage pageOf(const std::string& path, const std::string& date) {
    const auto commands = commandsBelow(path);
    Page page(pageNameOf(path), date, summaryOf(path));
    auto& out = page.out();
    out.section("SYNOPSIS");
    for (const auto& command : commands)
        page.synopsisOf(command);
    out.section("DESCRIPTION");
    const bool areSeveral = commands.size() > 1 || findGroup(path).has_value();
    for (const auto& command : commands) {
        if (areSeveral)
            out.macro("Ss " + Mdoc::argument("tavo " + command.path));
        page.tell(command);
    }
    writeOptionsFromAbove(page, path, commands);
    out.section("EXIT STATUS");
    out.text("As told in");
    out.macro("Xr tavo 1 .");
    out.section("EXAMPLES");
    std::vector<std::string> examples;
    for (const auto& command : commands)
        examples.insert(examples.end(), command.examples.begin(), command.examples.end());
    out.literal(examples);
    out.section("SEE ALSO");
    out.macro("Xr tavo 1");
    return {pageNameOf(path), std::move(page).take()};
}

struct Entry {
    const char* markup;
    const char* text;
};

constexpr Entry variables[] = {
    {"Ev TAVO_HOST", "The device, as for --host."},
    {"Ev TAVO_PORT", "Its port, as for --port."},
    {"Ev TAVO_USER", "The user, as for --user."},
    {"Ev TAVO_PASSWORD", "The password, unless --password-file names a file. No program that the tool starts "
                         "gets it."},
    {"Ev TAVO_CONFIG", "The configuration file, in place of the usual one."},
    {"Ev XDG_CONFIG_HOME", "The folder of the configuration, in place of ~/.config."},
    {"Ev XDG_RUNTIME_DIR", "The folder in which shares are found; without it there are none."},
    {"Ev XDG_STATE_HOME", "The folder of the shell's history, in place of ~/.local/state."},
    {"Ev TERM", "Where it is dumb or not set, nothing is drawn on the terminal."},
};

constexpr Entry files[] = {
    {"Pa ~/.config/tavo/config.toml", "Names of devices, and what holds for each of them."},
    {"Pa $XDG_RUNTIME_DIR/tavo/*.share", "The sockets of shares, by which other commands find them."},
    {"Pa ~/.local/state/tavo/history", "The lines of the shell."},
};

template <std::size_t Count>
void writeEntries(Page& page, const Entry (&entries)[Count]) {
    page.list([&] {
        for (const auto& [markup, text] : entries)
            page.item(markup, text);
    });
}

void writeOptionsOfTool(Page& page) {
    Program program;
    OptionList options;
    program.describe(options);
    auto& out = page.out();
    out.section("OPTIONS");
    page.list([&] {
        page.item("Fl h , Fl " + Mdoc::argument("-help"), "Print a help text and exit");
        page.item("Fl " + Mdoc::argument("-version"), "Print the version and exit");
    });
    page.options(options, [](const Option& option) { return option.rules.heading.empty(); });
    std::vector<std::string> headings;
    for (const auto& option : options)
        if (const auto& heading = option.rules.heading;
            !heading.empty() && std::find(headings.begin(), headings.end(), heading) == headings.end())
            headings.push_back(heading);
    for (const auto& heading : headings) {
        out.macro("Ss " + Mdoc::argument(heading));
        page.options(options, [&](const Option& option) { return option.rules.heading == heading; });
    }
}

ManPage pageOfTool(const std::string& date) {
    Page page("tavo", date, "drive a networked hardware-debug appliance");
    auto& out = page.out();
    out.section("SYNOPSIS");
    out.macro("Nm");
    out.macro("Op Ar OPTION ...");
    out.macro("Ar COMMAND ...");
    out.section("DESCRIPTION");
    out.text("The tool finds the device that the options, the environment or the configuration file name, "
             "takes its lock if the command needs it, carries the command out, and gives the lock back. "
             "Options may stand before or after the command.");
    out.macro("Pp");
    out.text("The password comes from the first line of --password-file, else from TAVO_PASSWORD, else from "
             "the file that the configuration names, else from the terminal.");
    out.section("COMMANDS");
    page.list([&] {
        for (const auto& name : namesBelow(""))
            page.item(fmt::format("Xr {} 1", pageNameOf(name)), summaryOf(name));
    });
    writeOptionsOfTool(page);
    out.section("ENVIRONMENT");
    writeEntries(page, variables);
    out.section("FILES");
    writeEntries(page, files);
    out.section("EXIT STATUS");
    page.list([&] {
        for (const auto& [code, meaning] : exitCodeMeanings())
            page.item(fmt::format("{}", static_cast<int>(code)), meaning);
    });
    out.section("EXAMPLES");
    out.literal({"tavo --sim tree", "tavo --host lab-tavo --user alice relay set power on",
                 "tavo help i2c transfer"});
    out.section("SEE ALSO");
    auto names = namesBelow("");
    names.emplace_back("sim");
    std::sort(names.begin(), names.end());
    for (const auto& name : names)
        out.macro(fmt::format("Xr {} 1{}", pageNameOf(name), name == names.back() ? "" : " ,"));
    return {"tavo", std::move(page).take()};
}

} // namespace

std::vector<ManPage> manPages(const std::string& date) {
    std::vector<ManPage> pages{pageOfTool(date)};
    for (const auto& name : namesBelow(""))
        pages.push_back(pageOf(name, date));
    return pages;
}

bool showManPage(const std::string& path) {
    // The shell has one.
    std::optional<InterruptWatch> watch;
    if (!InterruptWatch::isThere())
        watch.emplace();
    const auto page = pageNameOf(path);
    if (runProgram({"/bin/sh", "-c", "exec man -w 1 \"$1\" >/dev/null 2>&1", "sh", page}) != 0)
        return false;
    runProgram({"man", "1", page});
    return true;
}

} // namespace TAVO::cli
