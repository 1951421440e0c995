#include <chrono>
#include <cstdint>

#include <gtest/gtest.h>

#include <tavo/cli/progress_bar.h>
#include <tavo/cli/serial_link.h>

namespace {

using namespace TAVO::cli;
using namespace std::chrono_literals;

TEST(ProgressText, ShowsPartAmountAndRate) {
    constexpr std::uint64_t mebi = 1024 * 1024;
    EXPECT_EQ(progressText("writing", 0, 8 * mebi, 0s),
              "writing [--------------------]   0 %, 0.0 of 8.0 MiB");
    EXPECT_EQ(progressText("writing", 2 * mebi, 8 * mebi, 500ms),
              "writing [#####---------------]  25 %, 2.0 of 8.0 MiB, 4.0 MiB/s");
    EXPECT_EQ(progressText("reading", mebi / 2, mebi / 2, 2s),
              "reading [####################] 100 %, 0.5 of 0.5 MiB, 0.2 MiB/s");
    EXPECT_EQ(progressText("reading", 0, 0, 1s), "reading [####################] 100 %, 0.0 of 0.0 MiB");
}

TEST(TextWatch, FindsATextThatComesInPieces) {
    TextWatch watch("login: ");
    EXPECT_FALSE(watch.sees("boot log"));
    EXPECT_FALSE(watch.sees("in"));
    EXPECT_FALSE(watch.sees(":"));
    EXPECT_FALSE(watch.sees(""));
    EXPECT_TRUE(watch.sees(" ..."));
    EXPECT_TRUE(watch.sees(""));
    EXPECT_TRUE(TextWatch("x").sees("axb"));
}

TEST(TextWatch, NeverFindsAnEmptyText) {
    TextWatch watch("");
    EXPECT_FALSE(watch.sees(""));
    EXPECT_FALSE(watch.sees("anything"));
}

} // namespace
