#include <gtest/gtest.h>

#include <tavo/simulator/models/header_status.h>
#include <tests/simulator/models/hand_clock.h>

namespace {

using TAVO::simulator::HeaderStatus;
using Headers = std::vector<HeaderStatus::Header>;

struct HeaderStatusTest : testing::Test, tests::HandClock {
    HeaderStatus status{board, {"A", "B"}, {"J1"}};
};

TEST_F(HeaderStatusTest, is_connected_while_the_board_has_power) {
    EXPECT_EQ(status.headers(), (Headers{{"A", false, false, false}, {"B", false, false, false}}));
    board->setPower(true);
    status.clear();
    EXPECT_EQ(status.headers(), (Headers{{"A", true, false, false}, {"B", true, false, false}}));
}

TEST_F(HeaderStatusTest, remembers_a_power_on_until_cleared) {
    board->setPower(true);
    board->setPower(false);
    EXPECT_EQ(status.headers().front(), (HeaderStatus::Header{"A", false, true, false}));
    status.clear();
    EXPECT_EQ(status.headers().front(), (HeaderStatus::Header{"A", false, false, false}));
}

TEST_F(HeaderStatusTest, keeps_an_error_until_cleared) {
    status.setError();
    EXPECT_TRUE(status.headers().back().error);
    status.clear();
    EXPECT_FALSE(status.headers().back().error);
}

} // namespace
