#include <algorithm>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tavo/cli/arguments.h>
#include <tavo/cli/command_list.h>
#include <tavo/cli/values/words.h>

namespace {

using namespace TAVO::cli;
using testing::HasSubstr;

std::string groupOf(const std::string& path) {
    const auto blank = path.rfind(' ');
    return blank == std::string::npos ? "" : path.substr(0, blank);
}

std::string helpOf(const std::string& path) {
    std::vector<std::string> words{"tavo"};
    std::istringstream stream(path);
    for (std::string word; stream >> word;)
        words.push_back(word);
    words.emplace_back("--help");
    std::vector<const char*> pointers;
    for (const auto& word : words)
        pointers.push_back(word.c_str());
    return parseArguments(static_cast<int>(pointers.size()), pointers.data()).help;
}

/// The names below "Subcommands:".
std::vector<std::string> subcommandsIn(const std::string& help) {
    std::vector<std::string> names;
    std::istringstream lines(help);
    std::string line;
    while (std::getline(lines, line) && line != "Subcommands:") {
    }
    while (std::getline(lines, line) && line.starts_with("  "))
        if (line[2] != ' ')
            names.push_back(line.substr(2, line.find(' ', 2) - 2));
    return names;
}

/// The names that stand below a group, in the order of the list.
std::vector<std::string> namesBelow(const std::string& group) {
    std::vector<std::string> names;
    const auto prefix = group.empty() ? group : group + " ";
    for (const auto& command : commandList())
        if (command.path.starts_with(prefix) && !command.isHidden) {
            const auto rest = command.path.substr(prefix.size());
            const auto name = rest.substr(0, rest.find(' '));
            if (std::find(names.begin(), names.end(), name) == names.end())
                names.push_back(name);
        }
    return names;
}

TEST(CommandList, HasEachCommandOnceAndAGroupOrACommandForEachOfSeveralWords) {
    std::set<std::string> groups;
    for (const auto& group : commandGroups()) {
        EXPECT_TRUE(groups.insert(group.path).second) << group.path;
        EXPECT_FALSE(namesBelow(group.path).empty()) << group.path;
    }
    std::set<std::string> paths;
    for (const auto& command : commandList()) {
        EXPECT_TRUE(paths.insert(command.path).second) << command.path;
        EXPECT_FALSE(groups.contains(command.path)) << command.path;
        for (auto group = groupOf(command.path); !group.empty(); group = groupOf(group))
            EXPECT_TRUE(groups.contains(group) || TAVO::cli::findCommand(group)) << command.path;
    }
}

TEST(CommandList, IsWhatTheHelpTells) {
    EXPECT_EQ(subcommandsIn(helpOf("")), namesBelow(""));
    for (const auto& group : commandGroups()) {
        const auto help = helpOf(group.path);
        EXPECT_THAT(help, HasSubstr(group.summary));
        EXPECT_EQ(subcommandsIn(help), namesBelow(group.path));
        EXPECT_EQ(help.find("--object") != std::string::npos, !group.object.empty()) << group.path;
    }
    for (const auto& command : commandList()) {
        const auto help = helpOf(command.path);
        EXPECT_THAT(help, HasSubstr(command.summary));
        EXPECT_THAT(help, HasSubstr(command.footer));
        const auto bound = command.bind();
        for (const auto& option : bound.options) {
            EXPECT_THAT(help, HasSubstr("\n  " + option.names)) << command.path;
            EXPECT_FALSE(option.help.empty()) << command.path << ' ' << option.names;
        }
    }
}

TEST(CommandList, TellsTheOptionsThatStandBesideEveryCommand) {
    Program program;
    OptionList options;
    program.describe(options);
    const auto help = helpOf("");
    for (const auto& option : options)
        EXPECT_THAT(help, HasSubstr("\n  " + option.names + " "));
}

TEST(CommandList, GivesTheObjectOfAGroupToAllItsCommands) {
    for (const auto& command : commandList()) {
        bool expected = false;
        for (const auto& group : commandGroups())
            expected = expected || (!group.object.empty() && command.path.starts_with(group.path + " "));
        EXPECT_EQ(command.bind().object != nullptr, expected) << command.path;
    }
}

TEST(CommandList, HasExamplesThatParseForEachCommand) {
    for (const auto& command : commandList()) {
        EXPECT_EQ(command.examples.empty(), command.isHidden) << command.path;
        EXPECT_LE(command.examples.size(), 2u) << command.path;
        for (const auto& example : command.examples) {
            const auto words = splitWords(example);
            std::vector<const char*> pointers;
            for (const auto& word : words)
                pointers.push_back(word.c_str());
            EXPECT_NO_THROW(parseArguments(static_cast<int>(pointers.size()), pointers.data())) << example;
            EXPECT_THAT(example, HasSubstr(command.path.substr(command.path.rfind(' ') + 1)));
            EXPECT_THAT(helpOf(command.path), HasSubstr("\n  " + example + "\n"));
        }
    }
}

TEST(CommandList, TellsInALineWhatACommandTakesFromAbove) {
    EXPECT_THAT(helpOf("i2c get"), HasSubstr("\nFrom above: --object NAME (see 'tavo help i2c'), --json"));
    EXPECT_THAT(helpOf("hdt trigger get"), HasSubstr("\nFrom above: --object NAME (see 'tavo help hdt'), "));
    EXPECT_THAT(helpOf("relay get"), HasSubstr("\nFrom above: --json (see 'tavo help'), and the connection"));
    EXPECT_THAT(helpOf("help"), testing::Not(HasSubstr("From above")));
}

TEST(CommandList, NamesValuesAsPeopleDo) {
    EXPECT_THAT(helpOf("i2c dump"), HasSubstr("Usage: tavo i2c dump ADDRESS [OPTION ...]\n"));
    EXPECT_THAT(helpOf("relay set"), HasSubstr("Usage: tavo relay set NAME on|off [OPTION ...]\n"));
    EXPECT_THAT(helpOf("i2c set"),
                HasSubstr("Usage: tavo i2c set ADDRESS REGISTER [VALUES ...] [OPTION ...]\n"));
    for (const auto& command : commandList())
        for (const auto* type : {"UINT", "INT:", "FLOAT", "TEXT:", "REQUIRED", "Exit status"})
            EXPECT_THAT(helpOf(command.path), testing::Not(HasSubstr(type))) << command.path;
}

struct DimOptions : ObjectOptions {
    std::int32_t percent = 100;
    bool slowly = false;

    void describe(OptionList& list) {
        list.add("percent", percent, "How bright");
        list.add("--slowly", slowly, "Take a second");
    }
};

std::vector<DimOptions> dimmed;

TEST(Command, RunsWithWhatItsOwnPlaceHolds) {
    const auto dim =
        command<DimOptions>("lamp dim", "Set the brightness",
                            [](Session&, Output&, const DimOptions& options) { dimmed.push_back(options); });
    const auto one = dim.bind();
    const auto other = dim.bind();
    *std::get<std::int32_t*>(one.options.begin()->target) = 30;
    *one.object = "desk";
    dimmed.clear();
    // The action looks at neither.
    auto* session = reinterpret_cast<Session*>(&dimmed);
    auto* output = reinterpret_cast<Output*>(&dimmed);
    one.run(*session, *output);
    other.run(*session, *output);
    ASSERT_EQ(dimmed.size(), 2u);
    EXPECT_EQ(dimmed[0].percent, 30);
    EXPECT_EQ(dimmed[0].object, "desk");
    EXPECT_EQ(dimmed[1].percent, 100);
    EXPECT_EQ(dimmed[1].object, "");
}

} // namespace
