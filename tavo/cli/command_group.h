#pragma once

#include <functional>
#include <memory>
#include <utility>

#include <CLI/CLI.hpp>

#include <tavo/cli/program.h>

namespace TAVO::cli {

/// A subcommand with subcommands of its own, which share their arguments.
template <class Arguments>
class CommandGroup {
public:
    using Action = std::function<void(Session&, Output&, const Arguments&)>;

    /// `tool` and `program` must outlive the parsing.
    CommandGroup(CLI::App& tool, Program& program, const char* name, const char* description)
        : program_(program)
        , group_(tool.add_subcommand(name, description)) {
        group_->require_subcommand(1);
    }

    /// The subcommand that carries out `action` when it is chosen.
    CLI::App* add(const char* name, const char* description, Action action) {
        auto* command = group_->add_subcommand(name, description);
        command->callback([&program = program_, arguments = arguments_, action = std::move(action)] {
            program.action = [arguments, action](Session& session, Output& output) {
                action(session, output, *arguments);
            };
        });
        return command;
    }

    /// A group inside this one, with the same arguments.
    CommandGroup nested(const char* name, const char* description) {
        return CommandGroup(*this, name, description);
    }

    CLI::App& group() { return *group_; }
    Arguments& arguments() { return *arguments_; }

private:
    CommandGroup(const CommandGroup& outer, const char* name, const char* description)
        : program_(outer.program_)
        , group_(outer.group_->add_subcommand(name, description))
        , arguments_(outer.arguments_) {
        group_->require_subcommand(1);
    }

    Program& program_;
    CLI::App* group_;
    std::shared_ptr<Arguments> arguments_ = std::make_shared<Arguments>();
};

} // namespace TAVO::cli
