#include <stdexcept>

#include <gtest/gtest.h>

#include <tavo/simulator/models/lcd.h>

namespace {

using TAVO::simulator::Lcd;

TEST(Lcd, ShowsTextAtItsPlaceAndCutsItAtTheEndOfTheRow) {
    Lcd lcd;
    EXPECT_TRUE(lcd.print(0, 3, "Hi"));
    EXPECT_TRUE(lcd.print(1, 12, "overflow"));
    EXPECT_EQ(lcd.row(0), "   Hi           ");
    EXPECT_EQ(lcd.row(1), "            over");
    EXPECT_THROW(lcd.row(2), std::out_of_range);
}

TEST(Lcd, RefusesPlacesOutside) {
    Lcd lcd;
    EXPECT_FALSE(lcd.print(2, 0, "x"));
    EXPECT_FALSE(lcd.print(-1, 0, "x"));
    EXPECT_FALSE(lcd.print(0, 16, "x"));
    EXPECT_FALSE(lcd.print(0, -1, "x"));
    EXPECT_EQ(lcd.row(0), std::string(16, ' '));
}

TEST(Lcd, KeepsWhatIsNotOverwrittenUntilCleared) {
    Lcd lcd;
    lcd.print(0, 0, "0123456789ABCDEF");
    lcd.print(0, 4, "\n\xC4");
    EXPECT_EQ(lcd.row(0), "0123??6789ABCDEF");
    lcd.clear();
    EXPECT_EQ(lcd.row(0), std::string(16, ' '));
}

TEST(Lcd, TellsRowsAndBacklightInOneText) {
    Lcd lcd;
    lcd.print(0, 0, "up");
    EXPECT_TRUE(lcd.setBackLight(0));
    EXPECT_FALSE(lcd.setBackLight(101));
    EXPECT_FALSE(lcd.setBackLight(-1));
    EXPECT_EQ(lcd.toString(), "up              \n                \nbacklight=0");
}

} // namespace
