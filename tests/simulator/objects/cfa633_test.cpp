#include <gtest/gtest.h>

#include <tavo/simulator/objects/cfa633.h>
#include <tavo/simulator/return_codes.h>
#include <tests/simulator/simulator_fixture.h>

namespace {

using namespace TAVO::simulator;

struct Cfa633ObjectTest : SimulatorFixture {
    std::shared_ptr<TAVO::Device> device = open();
    std::shared_ptr<CommonModules::Cfa633_v1_0> lcd = object<CommonModules::Cfa633_v1_0>(device, "lcd");

    std::string shown() { return called(device, lcd->getAvailableMethod())->value().info; }
    template <class Method>
    std::int32_t codeOf(std::shared_ptr<Method> method) {
        return called(device, method)->getResult().code;
    }
};

TEST_F(Cfa633ObjectTest, TextIsReadBackByTheClientAndByTheTest) {
    EXPECT_EQ(codeOf(lcd->getLcdPrintMethod(0, 2, "booting")), 0);
    EXPECT_EQ(codeOf(lcd->getLcdPrintMethod(1, 14, "abc")), 0);
    EXPECT_EQ(codeOf(lcd->getLcdBackLightMethod(30)), 0);
    EXPECT_EQ(shown(), "  booting       \n              ab\nbacklight=30");
    simulator.inspect([](Appliance& appliance) {
        EXPECT_EQ(appliance.get<Cfa633>("lcd").lcd().row(0), "  booting       ");
    });
    EXPECT_EQ(codeOf(lcd->getLcdClearMethod()), 0);
    EXPECT_EQ(shown().substr(0, 16), std::string(16, ' '));
}

TEST_F(Cfa633ObjectTest, PlacesAndLevelsOutsideAreRefused) {
    EXPECT_EQ(codeOf(lcd->getLcdPrintMethod(2, 0, "x")), return_code::badArgument);
    EXPECT_EQ(codeOf(lcd->getLcdPrintMethod(0, 16, "x")), return_code::badArgument);
    EXPECT_EQ(codeOf(lcd->getLcdBackLightMethod(101)), return_code::badArgument);
}

TEST_F(Cfa633ObjectTest, ResetOfTheApplianceClearsTheDisplay) {
    codeOf(lcd->getLcdPrintMethod(0, 0, "x"));
    simulator.inspect([](Appliance& appliance) { appliance.reset(); });
    EXPECT_EQ(shown().front(), ' ');
}

} // namespace
