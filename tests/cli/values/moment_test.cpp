#include <cstdint>
#include <limits>
#include <stdexcept>

#include <gtest/gtest.h>

#include <tavo/cli/values/moment.h>

namespace {

using namespace TAVO::cli;

TEST(Moment, CountsFromTheBeginningOf1970InTheUnit) {
    EXPECT_EQ(parseMoment("1970-01-01T00:00:00Z", ClockUnit::seconds), 0);
    EXPECT_EQ(parseMoment("2024-05-06T07:08:09Z", ClockUnit::seconds), 1714979289);
    EXPECT_EQ(parseMoment("2024-05-06T07:08:09", ClockUnit::milliseconds), 1714979289000);
    EXPECT_EQ(parseMoment("2024-05-06T07:08:09.25Z", ClockUnit::microseconds), 1714979289250000);
    EXPECT_EQ(parseMoment("2024-05-06T07:08:09.123456789123Z", ClockUnit::milliseconds), 1714979289123);
    EXPECT_EQ(parseMoment("2024-05-06T09:38:09+02:30", ClockUnit::seconds), 1714979289);
    EXPECT_EQ(parseMoment("2024-05-06T02:08:09-05:00", ClockUnit::seconds), 1714979289);
    EXPECT_EQ(parseMoment("1969-12-31T23:59:59.5Z", ClockUnit::milliseconds), -500);
}

TEST(Moment, RefusesWhatIsNone) {
    for (const auto* text :
         {"", "today", "2024-05-06", "2024-13-01T00:00:00Z", "2023-02-29T00:00:00Z", "2024-05-06T24:00:00Z",
          "2024-05-06T07:60:00Z", "2024-05-06T07:08:09Zx", "2024-05-06T07:08:09+2"})
        EXPECT_THROW(parseMoment(text, ClockUnit::seconds), std::invalid_argument) << text;
    EXPECT_THROW(parseMoment("2500-01-01T00:00:00Z", ClockUnit::nanoseconds), std::invalid_argument);
}

TEST(Moment, IsWrittenWithTheDigitsOfItsUnit) {
    EXPECT_EQ(momentText(1714979289, ClockUnit::seconds), "2024-05-06T07:08:09Z");
    EXPECT_EQ(momentText(1714979289250000, ClockUnit::microseconds), "2024-05-06T07:08:09.250000Z");
    EXPECT_EQ(momentText(-500, ClockUnit::milliseconds), "1969-12-31T23:59:59.500Z");
    EXPECT_EQ(momentText(std::numeric_limits<std::int64_t>::max(), ClockUnit::seconds),
              "beyond the calendar");
    EXPECT_EQ(momentText(std::numeric_limits<std::int64_t>::min(), ClockUnit::seconds),
              "beyond the calendar");
}

} // namespace
