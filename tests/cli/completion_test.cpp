#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tavo/cli/completion.h>

namespace {

using namespace TAVO::cli;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::IsSupersetOf;
using testing::Not;

std::vector<std::string> namesOfKind(NameKind kind, const std::string&) {
    switch (kind) {
    case NameKind::object:
        return {"an-object"};
    case NameKind::relay:
        return {"a-relay"};
    case NameKind::device:
        return {"a-device"};
    case NameKind::group:
        return {"a-group"};
    case NameKind::topology:
        return {"a-topology"};
    case NameKind::method:
    case NameKind::command:
        break;
    }
    return {"a.method"};
}

Completions after(const std::vector<std::string>& words, const std::string& begun = "") {
    return completionsFor(words, begun, namesOfKind);
}

/// In a line of the tool.
Completions behind(const std::vector<std::string>& words, const std::string& begun = "") {
    return completionsForTool(words, begun, namesOfKind);
}

TEST(Completion, OffersCommandsLevelByLevel) {
    EXPECT_THAT(after({}).words, IsSupersetOf({"relay", "i2c", "info", "help"}));
    EXPECT_THAT(after({"relay"}).words, ElementsAre("list", "get", "set", "toggle"));
    EXPECT_THAT(after({"hdt", "trigger"}).words, ElementsAre("get", "set"));
    EXPECT_THAT(after({"relay", "nonsense"}).words, IsEmpty());
    EXPECT_THAT(after({"hdt", "--object", "x", "trigger"}).words, ElementsAre("get", "set"));
}

TEST(Completion, OffersWhatArgumentsTake) {
    EXPECT_THAT(after({"relay", "set"}).words, ElementsAre("a-relay"));
    EXPECT_THAT(after({"relay", "set", "power"}).words, ElementsAre("on", "off"));
    EXPECT_THAT(after({"relay", "set", "power", "on"}).words, IsEmpty());
    EXPECT_THAT(after({"call"}).words, ElementsAre("a.method"));
    EXPECT_THAT(after({"call", "a.method"}).words, IsEmpty());
    EXPECT_TRUE(after({"rom", "load"}).files);
    EXPECT_FALSE(after({"relay", "set"}).files);
}

TEST(Completion, OffersOptionsAndTheirValues) {
    EXPECT_THAT(after({"i2c", "get"}, "-").words,
                ElementsAre("--help", "--object", "--word-address", "--word"));
    EXPECT_THAT(after({"rom", "load", "x"}, "--").words, Contains("--yes"));
    EXPECT_THAT(after({"relay", "get"}, "-").words, Not(Contains("--object")));
    EXPECT_THAT(after({"i2c", "get", "--object"}).words, ElementsAre("an-object"));
    EXPECT_THAT(after({"serial", "--parity"}).words, ElementsAre("none", "even", "odd"));
    EXPECT_THAT(after({"serial", "--rtscts"}, "--p").words, Contains("--parity"));
    EXPECT_TRUE(after({"serial", "--log"}).files);
}

TEST(Completion, TakesOptionsOfTheToolAnywhere) {
    EXPECT_THAT(behind({}, "--").words, IsSupersetOf({"--host", "--json", "--password-file", "--version"}));
    EXPECT_THAT(behind({"relay"}, "--").words, Not(Contains("--version")));
    EXPECT_THAT(after({}, "--").words, Not(Contains("--host")));
    EXPECT_THAT(behind({"--host", "relay", "--json", "relay"}).words,
                ElementsAre("list", "get", "set", "toggle"));
    EXPECT_THAT(behind({"--host"}).words, ElementsAre("a-device"));
    EXPECT_THAT(behind({"relay", "get", "--host"}).words, ElementsAre("a-device"));
    EXPECT_THAT(behind({"relay", "set", "x", "--host=lab"}).words, ElementsAre("on", "off"));
    EXPECT_TRUE(behind({"--password-file"}).files);
    EXPECT_THAT(behind({"--sim", "--topology"}).words, ElementsAre("a-topology"));
    EXPECT_TRUE(behind({"--sim", "--topology"}).files);
    EXPECT_THAT(behind({"--timeout"}).words, IsEmpty());
}

TEST(Completion, GoesOnBehindAnEqualsSign) {
    EXPECT_THAT(behind({}, "--host=l").words, ElementsAre("--host=a-device"));
    EXPECT_THAT(behind({"serial"}, "--parity=e").words,
                ElementsAre("--parity=none", "--parity=even", "--parity=odd"));
    EXPECT_TRUE(behind({}, "--password-file=").files);
    EXPECT_THAT(behind({}, "--json=").words, IsEmpty());
    EXPECT_THAT(behind({}, "--nonsense=").words, IsEmpty());
}

TEST(Completion, TakesEverythingBehindTwoHyphensForArguments) {
    EXPECT_THAT(behind({"relay", "set", "--"}).words, ElementsAre("a-relay"));
    EXPECT_THAT(behind({"relay", "set", "--", "x"}, "-").words, ElementsAre("on", "off"));
}

TEST(Completion, KnowsTopicsGroupsAndShells) {
    EXPECT_THAT(behind({"help"}).words, IsSupersetOf({"relay", "exit-status"}));
    EXPECT_THAT(behind({"help", "hdt"}).words, IsSupersetOf({"status", "trigger"}));
    EXPECT_THAT(behind({"help", "hdt", "trigger"}).words, ElementsAre("get", "set"));
    EXPECT_THAT(behind({"help", "hdt", "trigger", "get"}).words, IsEmpty());
    EXPECT_THAT(behind({"hosts"}).words, ElementsAre("a-group"));
    EXPECT_THAT(behind({"completion"}).words, ElementsAre("bash", "zsh", "fish"));
    EXPECT_THAT(behind({}).words, Not(Contains("complete-words")));
}

TEST(Completion, FindsTheOptionsOfTheToolInALine) {
    EXPECT_EQ(
        optionsOfTool({"--host", "lab1", "relay", "--secure", "get", "--user=bob", "--object", "--via", "x"}),
        (GivenOptions{{"--host", "lab1"}, {"--secure", ""}, {"--user", "bob"}, {"--via", "x"}}));
    EXPECT_EQ(optionsOfTool({"lock", "hold", "--", "--host", "lab2"}), GivenOptions());
    EXPECT_EQ(optionsOfTool({"--host"}), GivenOptions());
}

} // namespace
