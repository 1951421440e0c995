#include <tavo/cli/arguments.h>

#include <map>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include <tavo/cli/command_list.h>
#include <tavo/cli/failure.h>
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
        if (!command.footer.empty())
            app->footer(command.footer);
        if (bound.object && group.objects)
            group.objects->push_back(bound.object);
        app->callback([&program = program_, bound = std::move(bound)] {
            program.action = bound.run;
            program.localAction = bound.runLocally;
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

    Program& program_;
    std::map<std::string, CommandGroup> groups_;
    std::map<std::string, Node> nodes_;
};

void describe(CLI::App& tool, Program& program) {
    tool.fallthrough();
    tool.require_subcommand(1);
    tool.set_version_flag("--version", versionText());
    OptionList options;
    program.describe(options);
    addOptions(tool, options);
    tool.footer(
        "The password comes from the first line of --password-file, else from TAVO_PASSWORD, else from the\n"
        "file that the configuration names, else from the terminal. Options may stand before or after the\n"
        "command. TAVO_HOST, TAVO_PORT and TAVO_USER replace their options; the configuration file is\n"
        "~/.config/tavo/config.toml, or TAVO_CONFIG.\n\n" +
        exitCodesText());
    CommandTree tree(tool, program);
    for (const auto& command : commandList())
        tree.add(command);
}

} // namespace

Program parseArguments(int argc, const char* const* argv) {
    Program program;
    CLI::App tool("Drives a networked hardware-debug appliance", "tavo");
    describe(tool, program);
    try {
        tool.parse(argc, argv);
    } catch (const CLI::Success& help) {
        std::ostringstream text;
        tool.exit(help, text, text);
        program.help = text.str();
        return program;
    } catch (const CLI::ParseError& error) {
        throw Failure(ExitCode::usage, fmt::format("{} (see --help)", error.what()));
    }
    return program;
}

} // namespace TAVO::cli
