#include <fstream>
#include <iterator>
#include <set>
#include <sstream>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tests/support/process.h>

namespace {

using testing::HasSubstr;
using testing::IsEmpty;

std::string simulatorPage() {
    std::ifstream in(TAVO_SOURCE_DIR "/tavo/simulator/main/tavo-sim.1");
    return {std::istreambuf_iterator<char>(in), {}};
}

/// The long options in a text.
std::set<std::string> optionsIn(const std::string& text) {
    std::set<std::string> options;
    for (auto at = text.find("--"); at != std::string::npos; at = text.find("--", at + 2)) {
        const auto end = text.find_first_not_of("abcdefghijklmnopqrstuvwxyz-", at);
        if (end > at + 2)
            options.insert(text.substr(at, end - at));
    }
    return options;
}

TEST(PageOfTheSimulator, IsFreeOfFaults) {
    const auto outcome = support::runProcess({.program = "/usr/bin/env",
                                              .arguments = {"mandoc", "-Tlint", "-Wwarning"},
                                              .input = simulatorPage()});
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_THAT(outcome.output, IsEmpty());
}

TEST(PageOfTheSimulator, TellsOfTheOptionsAndFaultsThatItHas) {
    const auto help = support::runProcess({.program = TAVO_SIM_PROGRAM, .arguments = {"--help"}}).output;
    std::string page;
    const auto text = support::runProcess({.program = "/usr/bin/env",
                                           .arguments = {"mandoc", "-Tascii", "-Owidth=1000"},
                                           .input = simulatorPage()});
    for (const char c : text.output)
        if (c == '\b')
            page.pop_back();
        else
            page += c;
    EXPECT_EQ(optionsIn(page), optionsIn(help));
    std::istringstream lines(help.substr(help.find("A fault is")));
    std::size_t faults = 0;
    for (std::string line; std::getline(lines, line);) {
        if (!line.starts_with("  ") || line[2] == ' ')
            continue;
        const auto name = line.substr(2, line.find_first_of(" =[", 2) - 2);
        EXPECT_THAT(page, HasSubstr("     " + name)) << line;
        ++faults;
    }
    EXPECT_EQ(faults, 10u);
}

} // namespace
