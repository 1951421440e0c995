#include <stdexcept>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tavo/cli/values/tap_state_name.h>
#include <tests/support/failure_text.h>

namespace {

using TAVO::cli::parseTapState;
using TAVO::cli::tapStateText;

TEST(TapStateName, EachIsFoundInAnyLetterCaseAndWithoutItsSigns) {
    EXPECT_EQ(parseTapState("Test-Logic-Reset"), 0);
    EXPECT_EQ(parseTapState("run-test/idle"), 1);
    EXPECT_EQ(parseTapState("PAUSE_DR"), 6);
    EXPECT_EQ(parseTapState("exit2 ir"), 14);
    for (int state = 0; state < 16; ++state)
        EXPECT_EQ(parseTapState(*TAVO::cli::tapStateName(state)), state);
}

TEST(TapStateName, NumbersStandForThemselves) {
    EXPECT_EQ(parseTapState("13"), 13);
    EXPECT_EQ(parseTapState("99"), 99);
    EXPECT_EQ(tapStateText(13), "13 Pause-IR");
    EXPECT_EQ(tapStateText(16), "16");
    EXPECT_EQ(tapStateText(-1), "-1");
}

TEST(TapStateName, AnUnknownOneIsRefusedWithAList) {
    for (const auto* text : {"", "idle", "1x", "99999999999"})
        EXPECT_THAT(
            support::failureOf<std::invalid_argument>([&] { static_cast<void>(parseTapState(text)); }),
            testing::AllOf(testing::StartsWith(std::string("'") + text + "' is not a TAP state"),
                           testing::HasSubstr("Run-Test/Idle")));
}

} // namespace
