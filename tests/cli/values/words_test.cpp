#include <stdexcept>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tavo/cli/values/words.h>

namespace {

using namespace TAVO::cli;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(SplitWords, SeparatesAtBlanksAndDropsComments) {
    EXPECT_THAT(splitWords(""), IsEmpty());
    EXPECT_THAT(splitWords("  \t# all of it"), IsEmpty());
    EXPECT_THAT(splitWords(" power.set\tstate=1 # on\r"), ElementsAre("power.set", "state=1"));
    EXPECT_THAT(splitWords("a#b"), ElementsAre("a#b"));
}

TEST(SplitWords, KeepsWordsTogetherBetweenQuotes) {
    EXPECT_THAT(splitWords("name=\"two words\" ''"), ElementsAre("name=two words", ""));
    EXPECT_THAT(splitWords("list='[{\"a\": 1}]'"), ElementsAre("list=[{\"a\": 1}]"));
    EXPECT_THAT(splitWords(R"("a \"b\" \\ \n")"), ElementsAre(R"(a "b" \ \n)"));
    EXPECT_THAT(splitWords("'#' x"), ElementsAre("#", "x"));
}

TEST(SplitWords, TakesWhatFollowsABackslashAsItIs) {
    EXPECT_THAT(splitWords(R"(two\ words \" \' \\ \a \# )"),
                ElementsAre("two words", "\"", "'", "\\", "a", "#"));
    EXPECT_THAT(splitWords(R"("\$ \` \a" '\')"), ElementsAre(R"($ ` \a)", "\\"));
    EXPECT_THROW(splitWords("a\\"), std::invalid_argument);
}

TEST(SplitWords, RefusesAQuoteThatIsNotClosed) {
    EXPECT_THROW(splitWords("a 'b"), std::invalid_argument);
    EXPECT_THROW(splitWords("a=\"b\\\""), std::invalid_argument);
}

} // namespace
