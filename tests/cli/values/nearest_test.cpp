#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <tavo/cli/values/nearest.h>

namespace {

using TAVO::cli::nearest;

const std::vector<std::string> words{"detect", "dump", "get", "set", "status", "transfer"};

TEST(Nearest, IsOneWithFewSlips) {
    EXPECT_EQ(nearest("detct", words), "detect");
    EXPECT_EQ(nearest("dumpp", words), "dump");
    EXPECT_EQ(nearest("gte", words), "get");
    EXPECT_EQ(nearest("satus", words), "status");
    EXPECT_EQ(nearest("transefr", words), "transfer");
}

TEST(Nearest, IsOneThatBeginsLikeTheWord) { EXPECT_EQ(nearest("trans", words), "transfer"); }

TEST(Nearest, IsNothingForAWordThatIsLikeNone) {
    for (const auto* word : {"", "x", "frobnicate", "relay"})
        EXPECT_EQ(nearest(word, words), "") << word;
    EXPECT_EQ(nearest(std::string(100000, 'd'), words), "");
    EXPECT_EQ(nearest("get", {}), "");
}

} // namespace
