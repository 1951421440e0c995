#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tavo/simulator/objects/cfa633.h>
#include <tests/cli/tool_fixture.h>

namespace tool_test {
namespace {

using namespace TAVO::simulator;
using testing::HasSubstr;

class LcdCommand : public SimulatedTool {
protected:
    std::string display() {
        return simulator.inspect(
            [](Appliance& appliance) { return appliance.get<Cfa633>("lcd").lcd().toString(); });
    }
};

TEST_F(LcdCommand, PrintsAndClears) {
    EXPECT_EQ(tool({"lcd", "print", "hello"}).exitCode, 0);
    EXPECT_EQ(tool({"lcd", "print", "--row", "1", "--column", "13", "end"}).exitCode, 0);
    EXPECT_EQ(display(), "hello           \n             end\nbacklight=100");
    EXPECT_EQ(tool({"lcd", "clear"}).exitCode, 0);
    EXPECT_EQ(display(), "                \n                \nbacklight=100");
}

TEST_F(LcdCommand, SetsTheBacklight) {
    const auto run = tool({"lcd", "backlight", "30", "--json"});
    EXPECT_EQ(jsonOf(run.output), nlohmann::json({{"object", "lcd"}, {"returnCode", 0}}));
    EXPECT_THAT(display(), HasSubstr("backlight=30"));
}

TEST_F(LcdCommand, FailsWhereTheDeviceRefuses) {
    EXPECT_EQ(tool({"lcd", "print", "x", "--row", "2"}).exitCode, 1);
    const auto run = tool({"lcd", "backlight", "101"});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_THAT(run.errors, HasSubstr("lcd.lcdBackLight returned code 1"));
}

TEST_F(LcdCommand, ShowsTheDisplay) {
    tool({"lcd", "print", "hello"});
    EXPECT_EQ(tool({"lcd", "show"}).output, display() + "\n");
    EXPECT_EQ(jsonOf(tool({"lcd", "show", "--json"}).output),
              nlohmann::json({{"object", "lcd"}, {"info", display()}}));
}

} // namespace
} // namespace tool_test
