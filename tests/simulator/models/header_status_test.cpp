#include <gtest/gtest.h>

#include <tavo/simulator/models/header_status.h>
#include <tests/simulator/models/hand_clock.h>

namespace {

using TAVO::simulator::HeaderStatus;
using Headers = std::vector<HeaderStatus::Header>;

struct HeaderStatusTest : testing::Test, tests::HandClock {
    HeaderStatus status{board, {"A", "B"}, {"J1"}};
};

TEST_F(HeaderStatusTest, IsConnectedWhileTheBoardHasPower) {
    EXPECT_EQ(status.headers(), (Headers{{"A", false, false, false}, {"B", false, false, false}}));
    board->setPower(true);
    status.clear();
    EXPECT_EQ(status.headers(), (Headers{{"A", true, false, false}, {"B", true, false, false}}));
}

TEST_F(HeaderStatusTest, RemembersAPowerOnUntilCleared) {
    board->setPower(true);
    board->setPower(false);
    EXPECT_EQ(status.headers().front(), (HeaderStatus::Header{"A", false, true, false}));
    status.clear();
    EXPECT_EQ(status.headers().front(), (HeaderStatus::Header{"A", false, false, false}));
}

TEST_F(HeaderStatusTest, KeepsAnErrorUntilCleared) {
    status.setError();
    EXPECT_TRUE(status.headers().back().error);
    status.clear();
    EXPECT_FALSE(status.headers().back().error);
}

} // namespace
