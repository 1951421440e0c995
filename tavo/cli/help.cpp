#include <tavo/cli/help.h>

#include <algorithm>
#include <optional>
#include <sstream>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <tavo/cli/command_list.h>
#include <tavo/cli/failure.h>
#include <tavo/cli/option_text.h>
#include <tavo/cli/program.h>
#include <tavo/cli/values/nearest.h>

namespace TAVO::cli {

namespace {

std::string joined(const std::string& path, const std::string& name) {
    return path.empty() ? name : path + ' ' + name;
}

std::string summaryOf(const std::string& path) {
    if (const auto command = findCommand(path))
        return command->summary;
    const auto group = findGroup(path);
    return group ? group->summary : "";
}

/// A line of a list: what it is about, and what to say of it, both in their columns.
std::string entryText(const std::string& what, const std::string& text) {
    constexpr std::size_t column = 28;
    constexpr std::size_t width = 100;
    const std::string newLine = "\n" + std::string(column - 1, ' ');
    std::string entry = "  " + what;
    entry += entry.size() + 2 > column ? newLine : std::string(column - 1 - entry.size(), ' ');
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        if (entry.back() != ' ')
            entry += newLine;
        auto used = column - 1;
        std::istringstream words(line);
        for (std::string word; words >> word; used += word.size() + 1) {
            if (used > column && used + 1 + word.size() > width) {
                entry += newLine;
                used = column - 1;
            }
            entry += ' ' + word;
        }
    }
    return entry + '\n';
}

std::string optionText(const Option& option) {
    const auto value = option.isArgument() ? "" : valueText(option);
    return entryText(value.empty() ? option.names : option.names + ' ' + value,
                     option.help + limitsText(option));
}

template <class Matches>
std::string optionsText(const std::string& heading, const OptionList& options, Matches matches) {
    std::string text;
    for (const auto& option : options)
        if (matches(option))
            text += optionText(option);
    return text.empty() ? "" : "\n" + heading + ":\n" + text;
}

/// The options by their headings, those without one first.
std::string optionsText(const OptionList& options, const std::string& first) {
    std::string text;
    const auto isPlain = [](const Option& option) {
        return !option.isArgument() && option.rules.heading.empty();
    };
    std::string plain = first;
    std::vector<std::string> headings;
    for (const auto& option : options) {
        if (isPlain(option))
            plain += optionText(option);
        const auto& heading = option.rules.heading;
        if (!heading.empty() && std::find(headings.begin(), headings.end(), heading) == headings.end())
            headings.push_back(heading);
    }
    text += plain.empty() ? "" : "\nOptions:\n" + plain;
    for (const auto& heading : headings)
        text += optionsText(heading, options,
                            [&](const Option& option) { return option.rules.heading == heading; });
    return text;
}

std::string subcommandsText(const std::string& path) {
    std::string text;
    for (const auto& name : namesBelow(path))
        text += entryText(name, summaryOf(joined(path, name)));
    return "\nSubcommands:\n" + text;
}

const std::string helpFlag = entryText("-h,--help", "Print this help and exit");

std::string toolText() {
    Program program;
    OptionList options;
    program.describe(options);
    return "Drives a networked hardware-debug appliance\n\nUsage: tavo [OPTION ...] COMMAND ...\n" +
           optionsText(options, helpFlag + entryText("--version", "Print the version and exit")) +
           subcommandsText("") +
           "\nThe password comes from the first line of --password-file, else from TAVO_PASSWORD, else from "
           "the\n"
           "terminal. Options may stand before or after the command.\n\n"
           "'tavo help COMMAND' tells more of a command, 'tavo help exit-status' what the exit status "
           "means.\n";
}

std::string groupText(const CommandGroup& group) {
    const auto object = group.object.empty() ? "" : entryText("--object NAME", group.object);
    return fmt::format("{}\n\nUsage: tavo {} COMMAND ...\n\nOptions:\n{}{}{}"
                       "\n'tavo help {} COMMAND' tells more of a command.\n",
                       group.summary, group.path, helpFlag, object, subcommandsText(group.path), group.path);
}

/// The options that stand above the command, in a line.
std::string aboveText(const Command& command, const BoundCommand& bound) {
    if (!bound.run)
        return "";
    const auto group = bound.object ? groupWithObject(command.path) : std::nullopt;
    return fmt::format(
        "\nFrom above: {}--json (see 'tavo help'), and the connection (--host, --user and more)\n",
        group ? fmt::format("--object NAME (see 'tavo help {}'), ", group->path) : "");
}

std::string commandText(const Command& command) {
    const auto bound = command.bind();
    std::string usage = "tavo " + command.path;
    for (const auto& option : bound.options)
        if (option.isArgument())
            usage += ' ' + usageOf(option);
    const auto isArgument = [](const Option& option) { return option.isArgument(); };
    auto text = fmt::format("{}\n\nUsage: {} [OPTION ...]\n{}{}{}", command.summary, usage,
                            optionsText("Arguments", bound.options, isArgument),
                            optionsText(bound.options, helpFlag), aboveText(command, bound));
    if (!namesBelow(command.path).empty())
        text += subcommandsText(command.path);
    if (!command.footer.empty())
        text += "\n" + command.footer + "\n";
    if (!command.examples.empty())
        text += fmt::format("\nExample{}:\n  {}\n", command.examples.size() == 1 ? "" : "s",
                            fmt::join(command.examples, "\n  "));
    return text;
}

} // namespace

std::vector<std::string> optionNames(const std::string& path) {
    std::vector<std::string> names{"-h", "--help"};
    const auto add = [&](const OptionList& options) {
        for (const auto& option : options) {
            std::istringstream stream(option.isArgument() ? "" : option.names);
            for (std::string name; std::getline(stream, name, ',');)
                names.push_back(name);
        }
    };
    if (const auto command = findCommand(path))
        add(command->bind().options);
    if (groupWithObject(path))
        names.emplace_back("--object");
    Program program;
    OptionList options;
    program.describe(options);
    add(options);
    return names;
}

std::string unknownCommandText(const std::string& path, const std::string& word) {
    auto meant = nearest(word, namesBelow(path));
    if (!meant.empty())
        meant = joined(path, meant);
    else
        for (const auto& command : commandList())
            if (meant.empty() && command.path.ends_with(' ' + word))
                meant = command.path;
    return fmt::format("there is no command '{}'{}", joined(path, word),
                       meant.empty() ? "" : fmt::format("; did you mean '{}'?", meant));
}

std::string unknownOptionText(const std::string& path, const std::string& word) {
    const auto name = word.substr(0, word.find('='));
    const auto meant = nearest(name, optionNames(path));
    return fmt::format("there is no option '{}'{}", name,
                       meant.empty() ? "" : fmt::format("; did you mean '{}'?", meant));
}

std::string helpText(const std::string& path) {
    if (path.empty())
        return toolText();
    if (const auto command = findCommand(path))
        return commandText(*command);
    if (const auto group = findGroup(path))
        return groupText(*group);
    std::string known;
    std::istringstream words(path);
    for (std::string word; words >> word; known = joined(known, word)) {
        const auto names = namesBelow(known);
        if (std::find(names.begin(), names.end(), word) == names.end())
            throw Failure(ExitCode::usage, unknownCommandText(known, word));
    }
    throw Failure(ExitCode::usage, unknownCommandText("", path));
}

std::string topicText(const std::vector<std::string>& words) {
    const auto path = fmt::format("{}", fmt::join(words, " "));
    return path == "exit-status" ? exitCodesText() : helpText(path);
}

} // namespace TAVO::cli
