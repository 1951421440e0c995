#include <cstddef>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tavo/cli/command_list.h>
#include <tavo/cli/failure.h>
#include <tavo/cli/man_page.h>
#include <tavo/cli/mdoc.h>
#include <tavo/cli/option_text.h>
#include <tavo/cli/program.h>
#include <tests/cli/tool_fixture.h>
#include <unistd.h>

namespace tool_test {
namespace {

using namespace TAVO::cli;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

constexpr const char* date = "2024-05-06";

support::ProcessOutcome mandoc(const Words& arguments, const std::string& page) {
    return support::runProcess(
        {.program = "/usr/bin/env", .arguments = Words{"mandoc"} + arguments, .input = page});
}

/// As a reader sees it, in long lines.
std::string rendered(const std::string& page) {
    const auto outcome = mandoc({"-Tascii", "-Owidth=1000"}, page);
    EXPECT_EQ(outcome.exitCode, 0) << outcome.errors;
    std::string text;
    for (const char c : outcome.output)
        // Bold and underlined characters are printed over.
        if (c == '\b')
            text.pop_back();
        else
            text += c;
    return text;
}

std::string pageFor(const std::string& name) {
    for (const auto& page : manPages(date))
        if (page.name == name)
            return page.text;
    throw std::runtime_error("no page " + name);
}

TEST(ManPages, TellOfEveryCommandAndEveryOption) {
    for (const auto& command : commandList()) {
        if (command.isHidden)
            continue;
        const auto first = command.path.substr(0, command.path.find(' '));
        const auto text = rendered(pageFor("tavo-" + first));
        EXPECT_THAT(text, HasSubstr("     tavo " + command.path));
        EXPECT_THAT(text, HasSubstr(command.summary));
        const auto bound = command.bind();
        for (const auto& option : bound.options)
            for (const auto& name : namesOf(option))
                EXPECT_THAT(text, HasSubstr(option.isArgument() ? valueText(option) : name)) << command.path;
        for (const auto& example : command.examples)
            EXPECT_THAT(text, HasSubstr(example + "\n"));
        if (bound.object) {
            EXPECT_THAT(text, HasSubstr("     --object NAME\n")) << command.path;
        }
    }
}

TEST(ManPages, TellOfTheToolAsAWhole) {
    const auto text = rendered(pageFor("tavo"));
    Program program;
    OptionList options;
    program.describe(options);
    for (const auto& option : options)
        for (const auto& name : namesOf(option))
            EXPECT_THAT(text, HasSubstr("     " + name));
    for (const auto& name : namesBelow(""))
        EXPECT_THAT(text, HasSubstr("tavo-" + name + "(1)"));
    for (const auto& [code, meaning] : exitCodeMeanings())
        EXPECT_THAT(text, HasSubstr(meaning));
    EXPECT_THAT(text, HasSubstr("May 6, 2024"));
    EXPECT_THAT(text, HasSubstr("TAVO_PASSWORD"));
    EXPECT_THAT(text, Not(HasSubstr("complete-words")));
}

TEST(ManPages, AreFreeOfFaults) {
    for (const auto& page : manPages(date)) {
        const auto outcome = mandoc({"-Tlint", "-Wwarning"}, page.text);
        EXPECT_THAT(outcome.output + outcome.errors, IsEmpty()) << page.name;
        EXPECT_EQ(outcome.exitCode, 0) << page.name;
    }
}

TEST(ManPages, NeedADate) {
    for (const auto* wrong :
         {"", "today", "2024-5-6", "2024-13-01", "2024-00-10", "2024-01-32", "2024-01-0x"})
        EXPECT_THROW(manPages(wrong), std::invalid_argument) << wrong;
}

TEST(Mdoc, TakesNoTextForMarkup) {
    const std::vector<std::string> texts{".Sh WRONG",    "'Sh WRONG", "a \\fBb\\n c\\",   "--no-break -x",
                                         "\"quoted\" a", "Ar Fl x",   "\\& \\\" comment", "."};
    for (const auto& text : texts) {
        Mdoc page;
        page.macro("Dd May 6, 2024");
        page.macro("Dt TEST 1");
        page.macro("Os");
        page.section("NAME");
        page.macro("Nm test");
        page.macro("Nd test");
        page.section("DESCRIPTION");
        page.text("first");
        page.text(text);
        page.macro("Bl -tag -width Ds");
        page.macro("It Ar " + Mdoc::argument(text));
        page.text("third");
        page.macro("El");
        page.literal({text});
        const auto seen = rendered(page.page());
        EXPECT_THAT(seen, HasSubstr("first " + text + "\n"));
        EXPECT_THAT(seen, HasSubstr("\n     " + text));
        EXPECT_THAT(seen, HasSubstr("\n           " + text + "\n"));
        EXPECT_THAT(mandoc({"-Tlint", "-Wwarning"}, page.page()).output, IsEmpty()) << text;
    }
}

/// A folder with a program "man", which knows one page and says what it was asked for.
class HelpByMan : public testing::Test {
protected:
    HelpByMan()
        : folder_(std::filesystem::path(testing::TempDir()) / ("tavo_man_" + std::to_string(::getpid()))) {
        std::filesystem::create_directories(folder_);
        const auto man = folder_ / "man";
        std::ofstream(man) << "#!/bin/sh\n"
                              "case \"$*\" in\n"
                              "'-w 1 tavo-relay') exit 0 ;;\n"
                              "-w*) echo none >&2; exit 16 ;;\n"
                              "*) echo \"page $*\" ;;\n"
                              "esac\n";
        std::filesystem::permissions(man, std::filesystem::perms::owner_all);
    }
    ~HelpByMan() override { std::filesystem::remove_all(folder_); }

    support::ProcessSetup help(const Words& topic) const {
        auto setup = toolWith(Words{"help"} + topic);
        setup.environment["PATH"] = folder_.string() + ":/usr/bin:/bin";
        return setup;
    }
    /// What the tool shows on a terminal, once that contains `expected`.
    static std::string onTerminal(support::ProcessSetup setup, const std::string& expected) {
        support::PseudoTerminal terminal;
        setup.terminal = terminal.name();
        setup.outputFile = terminal.name();
        support::Process process(setup);
        auto shown = terminal.waitFor(expected);
        const auto outcome = process.wait();
        EXPECT_EQ(outcome.exitCode, 0);
        EXPECT_THAT(outcome.errors, IsEmpty());
        return shown;
    }

private:
    std::filesystem::path folder_;
};

TEST_F(HelpByMan, ShowsTheInstalledPageOnATerminal) {
    EXPECT_THAT(onTerminal(help({"relay"}), "page 1 tavo-relay"), Not(HasSubstr("Usage:")));
}

TEST_F(HelpByMan, PrintsTheTextWhereThereIsNoPage) {
    EXPECT_THAT(onTerminal(help({"i2c"}), "tells more of a command."), Not(HasSubstr("page")));
    EXPECT_THAT(onTerminal(help({"relay", "get"}), "relay get power"), HasSubstr("Usage: tavo relay get"));
    EXPECT_THAT(onTerminal(help({}), "exit status means."), HasSubstr("Usage: tavo"));
    auto withoutMan = help({"relay"});
    withoutMan.environment["PATH"] = "/nowhere";
    EXPECT_THAT(onTerminal(withoutMan, "tells more of a command."), HasSubstr("Usage: tavo relay"));
}

TEST_F(HelpByMan, PrintsTheTextWhereThereIsNoTerminal) {
    const auto outcome = support::runProcess(help({"relay"}));
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_THAT(outcome.output, HasSubstr("Usage: tavo relay"));
    EXPECT_THAT(outcome.output, Not(HasSubstr("page")));
}

} // namespace
} // namespace tool_test
