#include <cstdint>
#include <limits>
#include <stdexcept>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tavo/cli/values/whole_number.h>

namespace {

using namespace TAVO::cli;
using testing::HasSubstr;

std::string refusalOfNumber(const std::string& text, std::int64_t lowest, std::int64_t highest) {
    try {
        parseWholeNumber(text, lowest, highest);
    } catch (const std::invalid_argument& error) {
        return error.what();
    }
    return "";
}

TEST(ParseWholeNumber, TakesDecimalHexadecimalAndOctal) {
    EXPECT_EQ(parseWholeNumber("0").value(), 0);
    EXPECT_EQ(parseWholeNumber("42").value(), 42);
    EXPECT_EQ(parseWholeNumber("0x2a").value(), 42);
    EXPECT_EQ(parseWholeNumber("0X2A").value(), 42);
    EXPECT_EQ(parseWholeNumber("052").value(), 42);
    EXPECT_EQ(parseWholeNumber("-052").value(), -42);
    EXPECT_EQ(parseWholeNumber("18446744073709551615").magnitude, std::numeric_limits<std::uint64_t>::max());
    EXPECT_EQ(parseWholeNumber("-9223372036854775808").value(), std::numeric_limits<std::int64_t>::min());
}

TEST(ParseWholeNumber, SaysWhatIsWrong) {
    for (const auto* text : {"", "-", "0x", "x", "1.5", " 1", "1 ", "+1", "--1", "0x-1", "1e3", "09a"})
        EXPECT_THAT(refusalOfNumber(text, -9, 9), HasSubstr(" is not a number; whole numbers are")) << text;
    for (const auto* text : {"08", "-08", "0779"})
        EXPECT_THAT(refusalOfNumber(text, -9, 9),
                    HasSubstr(" is not a number: after a leading 0 it is octal"))
            << text;
}

TEST(ParseWholeNumber, KeepsTheBoundsAndNamesThem) {
    EXPECT_EQ(refusalOfNumber("-9", -9, 9), "");
    EXPECT_EQ(refusalOfNumber("10", -9, 9), "Value 10 not in range -9 to 9");
    EXPECT_EQ(refusalOfNumber("-10", -9, 9), "Value -10 not in range -9 to 9");
    EXPECT_EQ(refusalOfNumber("0", 1, 255), "Value 0 not in range 1 to 255");
    EXPECT_EQ(refusalOfNumber("-0", 1, 255), "Value -0 not in range 1 to 255");
    EXPECT_EQ(refusalOfNumber("0x100", 1, 255), "Value 0x100 not in range 1 to 255 (0x1 to 0xff)");
    EXPECT_EQ(refusalOfNumber("99999999999999999999999", 0, std::numeric_limits<std::int64_t>::max()),
              "Value 99999999999999999999999 not in range 0 to 9223372036854775807");
}

} // namespace
