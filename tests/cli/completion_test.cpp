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

Completions after(const std::vector<std::string>& words, const std::string& begun = "") {
    const auto names = [](NameKind kind, const std::string&) -> std::vector<std::string> {
        switch (kind) {
        case NameKind::object:
            return {"an-object"};
        case NameKind::relay:
            return {"a-relay"};
        case NameKind::method:
            break;
        }
        return {"a.method"};
    };
    return completionsFor(words, begun, names);
}

TEST(Completion, OffersCommandsLevelByLevel) {
    EXPECT_THAT(after({}).words, IsSupersetOf({"relay", "i2c", "info", "help"}));
    EXPECT_THAT(after({"relay"}).words, ElementsAre("list", "get", "set", "toggle"));
    EXPECT_THAT(after({"hdt", "trigger"}).words, ElementsAre("get", "set"));
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

} // namespace
