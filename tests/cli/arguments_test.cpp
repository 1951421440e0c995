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
