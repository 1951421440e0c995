#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tavo/simulator/objects/com.h>
#include <tavo/simulator/return_codes.h>
#include <tests/simulator/simulator_fixture.h>

namespace {

using namespace TAVO::simulator;
using testing::HasSubstr;

struct ComObjectTest : SimulatorFixture {
    std::shared_ptr<TAVO::Device> device = open();
    std::shared_ptr<CommonModules::Com_v1_0> com = object<CommonModules::Com_v1_0>(device, "com");

    std::int32_t openPort(bool loopback = false, int baud = 115200) {
        return called(device, com->getOpenMethod(baud, 8, false, false, 1, false, false, false, loopback))
            ->getResult()
            .code;
    }
    void boot() {
        simulator.inspect([](Appliance& appliance) {
            appliance.board()->setPower(true);
            appliance.clock().advance(std::chrono::seconds(4));
        });
    }
    void send(const std::string& text) {
        device->call(com->getSendMethod(0, std::vector<int>(text.begin(), text.end())));
    }
    std::string receive() {
        const auto bytes = called(device, com->getRecvMethod(65536))->value();
        return {bytes.begin(), bytes.end()};
    }
};

TEST_F(ComObjectTest, ClosedPortIsNotReady) {
    EXPECT_EQ(called(device, com->getRecvMethod(1))->getResult().code, return_code::notReady);
    EXPECT_EQ(called(device, com->getSendMethod(0, {1}))->getResult().code, return_code::notReady);
    EXPECT_EQ(called(device, com->getCloseMethod())->getResult().code, return_code::notReady);
}

TEST_F(ComObjectTest, OpenTakesStandardSettingsInOrder) {
    EXPECT_EQ(openPort(false, 12345), return_code::badArgument);
    EXPECT_EQ(called(device, com->getOpenMethod(9600, 7, true, false, 2, true, false, false, true))
                  ->getResult()
                  .code,
              0);
    simulator.inspect([](Appliance& appliance) {
        const SerialPort::Settings expected{9600, 7, true, false, 2, true, false, false, true};
        EXPECT_EQ(appliance.get<Com>("com").port().settings(), expected);
        appliance.reset();
        EXPECT_EQ(appliance.get<Com>("com").port().settings(), std::nullopt);
    });
}

TEST_F(ComObjectTest, LoopbackShowsTheZeroBytesThatTheClientSends) {
    ASSERT_EQ(openPort(true), 0);
    send("AB");
    EXPECT_EQ(receive(), std::string("\0\0AB", 4));
}

TEST_F(ComObjectTest, BootedBoardTalksAtItsPrompt) {
    ASSERT_EQ(openPort(), 0);
    EXPECT_EQ(receive(), "");
    boot();
    EXPECT_THAT(receive(), testing::AllOf(HasSubstr("Target firmware"), testing::EndsWith("target> ")));
    send("temp\r");
    EXPECT_EQ(receive(), "temp\r\n36.5 C\r\ntarget> ");
}

TEST_F(ComObjectTest, RebootCommandBootsTheBoardAgain) {
    ASSERT_EQ(openPort(), 0);
    boot();
    send("reboot\r");
    EXPECT_EQ(simulator.inspect([](Appliance& appliance) { return appliance.board()->bootCount(); }), 2u);
}

} // namespace
