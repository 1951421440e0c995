#include <initializer_list>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tavo/cli/arguments.h>
#include <tavo/cli/failure.h>

namespace {

using namespace TAVO::cli;
using testing::HasSubstr;

Program parsed(std::initializer_list<const char*> arguments) {
    std::vector<const char*> all{"tavo"};
    all.insert(all.end(), arguments);
    return parseArguments(static_cast<int>(all.size()), all.data());
}

std::string refusalOf(std::initializer_list<const char*> arguments) {
    try {
        parsed(arguments);
    } catch (const Failure& failure) {
        EXPECT_EQ(failure.code, ExitCode::usage);
        return failure.what();
    }
    return "";
}

TEST(Arguments, AskForAnActionOrForHelp) {
    const auto action = parsed({"--sim", "--json", "info"});
    EXPECT_TRUE(action.action);
    EXPECT_EQ(action.help, "");
    EXPECT_TRUE(action.json);
    EXPECT_TRUE(action.connection.simulated);
    const auto help = parsed({"info", "--help"});
    EXPECT_FALSE(help.action);
    EXPECT_THAT(help.help, HasSubstr("info"));
}

TEST(Arguments, NameAnUnknownWordAndWhatMayBeMeant) {
    EXPECT_EQ(refusalOf({"--sim", "relya"}),
              "there is no command 'relya'; did you mean 'relay'? (see 'tavo help')");
    EXPECT_EQ(refusalOf({"--sim", "relay", "gte", "power"}),
              "there is no command 'relay gte'; did you mean 'relay get'? (see 'tavo help relay')");
    EXPECT_EQ(refusalOf({"--sim", "detect"}),
              "there is no command 'detect'; did you mean 'i2c detect'? (see 'tavo help')");
    EXPECT_EQ(refusalOf({"--sim", "frobnicate"}), "there is no command 'frobnicate' (see 'tavo help')");
    EXPECT_EQ(refusalOf({"--sim", "i2c", "get", "0x50", "--wrod"}),
              "there is no option '--wrod'; did you mean '--word'? (see 'tavo help i2c get')");
    EXPECT_EQ(refusalOf({"--sim", "--hsot=x", "info"}),
              "there is no option '--hsot'; did you mean '--host'? (see 'tavo help info')");
    EXPECT_EQ(refusalOf({"--sim", "info", "more"}),
              "'more' is more than 'info' takes (see 'tavo help info')");
    EXPECT_EQ(refusalOf({"--sim", "relay"}),
              "relay: one of list, get, set, toggle is missing (see 'tavo help relay')");
}

TEST(Arguments, OfHelpNeedNoDevice) {
    EXPECT_TRUE(parsed({"help"}).localAction);
    EXPECT_TRUE(parsed({"help", "relay", "get"}).localAction);
    EXPECT_FALSE(parsed({"help"}).action);
}

TEST(Arguments, OfALineAreThoseForAnOpenDevice) {
    EXPECT_TRUE(parseLine({"relay", "get", "power"}).action);
    EXPECT_TRUE(parseLine({"i2c", "get", "--object", "i2c", "0x50"}).action);
    EXPECT_THAT(parseLine({"relay", "--help"}).help, HasSubstr("List and switch relays"));
    for (const auto* option : {"--host=x", "--json", "--sim", "--version"})
        EXPECT_THROW(parseLine({option, "info"}), Failure) << option;
}

TEST(Arguments, RefuseTimesThatAreNoNumbers) {
    EXPECT_THAT(refusalOf({"--sim", "--timeout", "nan", "info"}), HasSubstr("--timeout"));
    EXPECT_THAT(refusalOf({"--sim", "post", "follow", "--timeout", "nan"}), HasSubstr("nan is not a number"));
    EXPECT_THAT(refusalOf({"--sim", "post", "follow", "--interval", "-nan"}),
                HasSubstr("-nan is not a number"));
    EXPECT_THAT(refusalOf({"--sim", "serial", "--wait", "NAN"}), HasSubstr("NAN is not a number"));
    EXPECT_THAT(refusalOf({"--sim", "post", "follow", "--timeout", "-1"}), HasSubstr("not in range"));
    EXPECT_EQ(refusalOf({"--sim", "post", "follow", "--timeout", "1.5", "--interval", "0.001"}), "");
}

} // namespace
