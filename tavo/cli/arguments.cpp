#include <tavo/cli/arguments.h>

#include <algorithm>
#include <map>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>
#include <fmt/format.h>
#include <fmt/ranges.h>

#include <tavo/cli/command_list.h>
#include <tavo/cli/failure.h>
#include <tavo/cli/help.h>
#include <tavo/cli/option_parser.h>
#include <tavo/client/version_number.h>

namespace TAVO::cli {

namespace {

std::string versionText() {
    return fmt::format("tavo {}.{}.{}", ClientLibraryMajorVersion, ClientLibraryMinorVersion,
                       ClientLibraryBugfixVersion);
}

/// Position of the last word in the path.
std::size_t nameIn(const std::string& path) {
    const auto blank = path.rfind(' ');
    return blank == std::string::npos ? 0 : blank + 1;
}

/// The parser's tree of commands and groups.
class CommandTree {
public:
    /// `tool` and `program` must outlive the parsing.
    CommandTree(CLI::App& tool, Program& program)
        : program_(program) {
        for (auto& group : commandGroups())
            groups_.emplace(group.path, std::move(group));
        nodes_[""] = {&tool, nullptr};
    }

    void add(const Command& command) {
        auto bound = command.bind();
        const auto& group = nodeAbove(command.path);
        auto* app = group.app->add_subcommand(command.path.substr(nameIn(command.path)), command.summary);
        addOptions(*app, bound.options);
        if (bound.object && group.objects)
            group.objects->push_back(bound.object);
        nodes_[command.path] = {app, group.objects};
        app->callback([&program = program_, app, path = command.path, bound = std::move(bound)] {
            // The parser calls the command above after that below it.
            if (const auto below = app->get_subcommands(); !below.empty())
                return refuseOptionsAbove(*app, path, path + ' ' + below.front()->get_name());
            program.action = bound.run;
            if (!bound.isLocal || bound.isLocal()) {
                program.localAction = bound.runLocally;
                program.localPath = path;
            }
        });
    }

private:
    struct Node {
        CLI::App* app = nullptr;
        /// Where to store --object, which this group or an enclosing one takes.
        std::shared_ptr<std::vector<std::string*>> objects;
    };

    const Node& nodeAbove(const std::string& path) {
        const auto name = nameIn(path);
        return nodeOf(name == 0 ? "" : path.substr(0, name - 1));
    }

    const Node& nodeOf(const std::string& path) {
        if (const auto known = nodes_.find(path); known != nodes_.end())
            return known->second;
        const auto& group = groups_.at(path);
        auto node = nodeAbove(path);
        node.app = node.app->add_subcommand(path.substr(nameIn(path)), group.summary);
        node.app->require_subcommand(1);
        if (!group.object.empty()) {
            node.objects = std::make_shared<std::vector<std::string*>>();
            const auto give = [objects = node.objects](const std::string& name) {
                for (auto* object : *objects)
                    *object = name;
            };
            node.app->add_option_function<std::string>("--object", give, group.object);
        }
        return nodes_[path] = std::move(node);
    }

    /// A command with another below it: its own options are not for that one.
    static void refuseOptionsAbove(const CLI::App& above, const std::string& path,
                                   const std::string& chosen) {
        for (const auto* option : above.get_options())
            if (option->count() > 0)
                throw Failure(ExitCode::usage, fmt::format("{} is an option of '{}', not of '{}'",
                                                           option->get_name(), path, chosen));
    }

    Program& program_;
    std::map<std::string, CommandGroup> groups_;
    std::map<std::string, Node> nodes_;
};

/// @param line whether the words are a line for an open device, which has no options of the connection.
void describe(CLI::App& tool, Program& program, bool line) {
    tool.fallthrough();
    tool.require_subcommand(1);
    if (!line) {
        tool.set_version_flag("--version", versionText());
        OptionList options;
        program.describe(options);
        addOptions(tool, options);
        tool.footer(
            "The password comes from the first line of --password-file, else from TAVO_PASSWORD, else from "
            "the\n"
            "file that the configuration names, else from the terminal. Options may stand before or after "
            "the\n"
            "command. TAVO_HOST, TAVO_PORT and TAVO_USER replace their options; the configuration file is\n"
            "~/.config/tavo/config.toml, or TAVO_CONFIG.");
    }
    CommandTree tree(tool, program);
    for (const auto& command : commandList())
        tree.add(command);
}

/// The path of the command or group that the words name, as far as they have been understood.
std::string chosenPath(const CLI::App& tool) {
    std::string path;
    for (const auto* app = &tool; !app->get_subcommands().empty();) {
        app = app->get_subcommands().front();
        path += (path.empty() ? "" : " ") + app->get_name();
    }
    return path;
}

/// What is wrong with words that do not parse.
std::string problemOf(const CLI::App& tool, const CLI::ParseError& error, const std::string& path) {
    const bool isCommand = namesBelow(path).empty();
    for (const auto& word : tool.remaining(true)) {
        const bool isOption = word.size() > 1 && word.front() == '-';
        if (isOption)
            return unknownOptionText(path, word);
        if (!isCommand)
            return unknownCommandText(path, word);
        if (dynamic_cast<const CLI::ExtrasError*>(&error))
            return fmt::format("'{}' is more than '{}' takes", word, path);
    }
    if (!isCommand && dynamic_cast<const CLI::RequiredError*>(&error))
        return fmt::format("{}: one of {} is missing", path.empty() ? "tavo" : path,
                           fmt::join(namesBelow(path), ", "));
    return error.what();
}

/// @param parse hands the words to the parser.
template <class Parse>
Program parseWith(bool line, Parse parse) {
    Program program;
    CLI::App tool("", "tavo");
    describe(tool, program, line);
    try {
        parse(tool);
    } catch (const CLI::CallForHelp&) {
        program.help = helpText(chosenPath(tool));
    } catch (const CLI::Success& version) {
        std::ostringstream text;
        tool.exit(version, text, text);
        program.help = text.str();
    } catch (const CLI::ParseError& error) {
        const auto path = chosenPath(tool);
        throw Failure(ExitCode::usage,
                      fmt::format("{} (see '{}{}{}')", problemOf(tool, error, path),
                                  line ? "help" : "tavo help", path.empty() ? "" : " ", path));
    }
    return program;
}

} // namespace

Program parseArguments(int argc, const char* const* argv) {
    return parseWith(false, [&](CLI::App& tool) { tool.parse(argc, argv); });
}

Program parseLine(std::vector<std::string> words) {
    std::reverse(words.begin(), words.end());
    return parseWith(true, [&](CLI::App& tool) { tool.parse(std::move(words)); });
}

} // namespace TAVO::cli
