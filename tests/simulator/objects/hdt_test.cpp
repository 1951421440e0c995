#include <chrono>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <tavo/simulator/objects/hdt.h>
#include <tavo/simulator/return_codes.h>
#include <tests/simulator/simulator_fixture.h>

namespace {

using namespace TAVO::simulator;
using TAVO::BoundMethod;
using TAVO::Method;
using Lines = std::vector<bool>;
using std::chrono::microseconds;
namespace hdt_records = TAVO::dto::hdt;

const Lines allLines(4, true);
const Lines noLine(4, false);

// Time stands still unless a test lets it pass.
struct HdtTest : DeviceFixture {
    explicit HdtTest(const std::string& topology = "standard")
        : DeviceFixture({.topology = topology}) {
        freeze();
    }
    void powerUp() {
        power(true);
        pass(microseconds(200'000));
    }
};

struct HdtProxyTest : HdtTest {
    std::shared_ptr<TAVO::HWDebug::Hdt_v1_1> hdt =
        object<TAVO::HWDebug::CpuDebug_v1_1>(device, "cpu0")->getHdt();

    Lines ready() { return read(hdt->getIoDbrdyGetMethod()); }
    Lines snapshot() { return read(hdt->getIoDbrdySnapShotGetMethod()); }
    bool requested() { return read(hdt->getIoDbreqGetMethod()).level; }
    int source() { return read(hdt->getIoDbreqSourceSnapshotGetMethod()).source; }
};

TEST_F(HdtProxyTest, PowerGoodAndResetFollowThePowerRelay) {
    const auto good = [this] { return read(hdt->getIoPwrokGetMethod()).level; };
    const auto inReset = [this] { return read(hdt->getIoResetGetMethod()).level; };
    EXPECT_FALSE(good());
    EXPECT_TRUE(inReset());
    done(object<CommonModules::Relay_v1_0>(device, "power")->getSetMethod(true));
    pass(microseconds(100'000));
    EXPECT_TRUE(good());
    EXPECT_TRUE(inReset());
    pass(microseconds(100'000));
    EXPECT_FALSE(inReset());
    done(object<CommonModules::Relay_v1_0>(device, "power")->getSetMethod(false));
    EXPECT_FALSE(good());
}

TEST_F(HdtProxyTest, CoresAnswerADebugRequestTenMicrosecondsLater) {
    powerUp();
    done(hdt->getIoDbreqSetMethod(true));
    pass(microseconds(9));
    EXPECT_EQ(ready(), noLine);
    pass(microseconds(1));
    EXPECT_EQ(ready(), allLines);
    done(hdt->getIoDbreqSetMethod(false));
    EXPECT_EQ(ready(), noLine);
}

TEST_F(HdtProxyTest, CoresWithoutPowerDoNotAnswer) {
    done(hdt->getIoDbreqSetMethod(true));
    pass(microseconds(1000));
    EXPECT_TRUE(requested());
    EXPECT_EQ(ready(), noLine);
}

TEST_F(HdtProxyTest, SnapshotsLatchUntilTheyAreCleared) {
    powerUp();
    done(hdt->getIoDbreqSetMethod(true));
    pass(microseconds(10));
    done(hdt->getIoDbreqSetMethod(false));
    EXPECT_EQ(snapshot(), allLines);
    EXPECT_EQ(source(), 1);
    done(hdt->getIoDbrdySnapshotClearMethod());
    done(hdt->getIoDbreqSourceSnapshotClearMethod());
    EXPECT_EQ(snapshot(), noLine);
    EXPECT_EQ(source(), 0);
}

TEST_F(HdtProxyTest, MaskedLinesTakeNoPart) {
    powerUp();
    const Lines mask{true, false, true, false};
    done(hdt->getOptionDbrdyMaskSet(mask));
    EXPECT_EQ(read(hdt->getOptionDbrdyMaskGetMethod()).mask, (std::vector<std::uint8_t>{1, 0, 1, 0}));
    done(hdt->getIoDbreqSetMethod(true));
    pass(microseconds(10));
    EXPECT_EQ(ready(), mask);
    EXPECT_EQ(codeOf(hdt->getOptionDbrdyMaskSet({true})), return_code::badArgument);
}

TEST_F(HdtProxyTest, APulsedRequestFallsBackWithTheCoresHalted) {
    powerUp();
    done(hdt->getOptionDbreqPulseWidthSetMethod(50'000));
    EXPECT_EQ(read(hdt->getOptionDbreqPulseWidthGetMethod()).pulseWidth, 50'000);
    done(hdt->getIoDbreqSetMethod(true));
    EXPECT_TRUE(requested());
    pass(microseconds(50));
    EXPECT_FALSE(requested());
    EXPECT_EQ(ready(), allLines);
    EXPECT_EQ(codeOf(hdt->getOptionDbreqPulseWidthSetMethod(-1)), return_code::badArgument);
}

TEST_F(HdtProxyTest, ABreakpointOfOneCoreHaltsAllWhenDbrdyAsksForIt) {
    powerUp();
    done(hdt->getOptionDbreqOnDbrdySetMethod(true));
    EXPECT_TRUE(read(hdt->getOptionDbreqOnDbrdyGetMethod()).enable);
    simulator.inspect([](Appliance& appliance) { appliance.get<Hdt>("cpu0.hdt").signals().haltCore(2); });
    pass(microseconds(10));
    EXPECT_EQ(ready(), allLines);
    EXPECT_EQ(source(), 2);
}

TEST_F(HdtProxyTest, ResetHaltsWhenTheOptionAsksForIt) {
    done(hdt->getOptionDbreqOnResetSetMethod(true));
    EXPECT_TRUE(read(hdt->getOptionDbreqOnResetGetMethod()).enable);
    powerUp();
    EXPECT_TRUE(requested());
    EXPECT_EQ(source(), 3);
    pass(microseconds(10));
    EXPECT_EQ(ready(), allLines);
}

TEST_F(HdtProxyTest, ATriggerInputRequestsOnItsEdge) {
    powerUp();
    done(hdt->getOptionTriggerSetupSetMethod(1, 1, 1, 200, 3, 400, 0, 0));
    const auto setup = read(hdt->getOptionTriggerSetupGetMethod(1));
    EXPECT_EQ(setup.value1, 1);
    EXPECT_EQ(setup.value2, 1);
    EXPECT_EQ(setup.value3, 200);
    EXPECT_EQ(setup.value4, 3);
    EXPECT_EQ(setup.value5, 400);
    EXPECT_EQ(setup.value6, 0);
    EXPECT_EQ(setup.value7, 0);
    done(hdt->getOptionDbreqOnTriggerSetMethod(true, 1, false, 3));
    const auto choice = read(hdt->getOptionDbreqOnTriggerGetMethod());
    EXPECT_TRUE(choice.flag1);
    EXPECT_EQ(choice.value1, 1);
    EXPECT_FALSE(choice.flag2);
    EXPECT_EQ(choice.value2, 3);

    done(hdt->getIoTriggerSetMethod(1, true));
    EXPECT_TRUE(read(hdt->getIoTriggerGetMethod(1)).level);
    EXPECT_FALSE(requested()) << "the falling edge is set up";
    done(hdt->getIoTriggerSetMethod(1, false));
    EXPECT_TRUE(requested());
    EXPECT_EQ(source(), 4);
}

TEST_F(HdtProxyTest, TriggersThatAreNotThereAndWrongSetupsAreRefused) {
    EXPECT_EQ(codeOf(hdt->getIoTriggerGetMethod(4)), return_code::badArgument);
    EXPECT_EQ(codeOf(hdt->getIoTriggerSetMethod(-1, true)), return_code::badArgument);
    EXPECT_EQ(codeOf(hdt->getOptionTriggerSetupGetMethod(4)), return_code::badArgument);
    EXPECT_EQ(codeOf(hdt->getOptionTriggerSetupSetMethod(0, 3, 0, 0, 0, 0, 0, 0)), return_code::badArgument);
    EXPECT_EQ(codeOf(hdt->getOptionDbreqOnTriggerSetMethod(true, 4, false, 0)), return_code::badArgument);
}

TEST_F(HdtProxyTest, WaitingByNameEndsWithTheLineOrTheTime) {
    powerUp();
    const auto wait = [this](std::vector<std::uint8_t> lines, std::int32_t timeout) {
        const auto request = std::make_shared<hdt_records::ioDbrdyWaitRequest>();
        request->lines = std::move(lines);
        request->timeout = timeout;
        return codeOf(std::make_shared<Method>("ioDbrdyWait", *hdt, TAVO::dto::Params{request}));
    };
    EXPECT_EQ(wait({1, 1, 1, 1}, 100), return_code::timedOut);
    done(hdt->getIoDbreqSetMethod(true));
    EXPECT_EQ(wait({0, 0, 0, 1}, 100), return_code::done);
    EXPECT_EQ(ready(), allLines) << "the time went on while waiting";
    EXPECT_EQ(wait({1}, 100), return_code::badArgument);
    EXPECT_EQ(wait({1, 1, 1, 1}, -1), return_code::badArgument);
}

TEST_F(HdtProxyTest, ASwitchedOffObjectDrivesNothing) {
    powerUp();
    done(hdt->getEnableSetMethod(false));
    EXPECT_FALSE(read(hdt->getEnableGetMethod()).enable);
    EXPECT_EQ(codeOf(hdt->getIoDbreqSetMethod(true)), return_code::disabled);
    EXPECT_EQ(codeOf(hdt->getIoTriggerSetMethod(0, true)), return_code::disabled);
    EXPECT_FALSE(requested());
}

TEST_F(HdtProxyTest, HeaderStatusTellsOfAPowerOnUntilCleared) {
    powerUp();
    EXPECT_EQ(read(hdt->getHeaderStatusGetMethod()).headers,
              (std::vector<TAVO::dto::Base::Header>{{"HDT", 1, 1, 0}}));
    done(hdt->getHeaderStatusClearMethod());
    EXPECT_EQ(read(hdt->getHeaderStatusGetMethod()).headers,
              (std::vector<TAVO::dto::Base::Header>{{"HDT", 1, 0, 0}}));
}

TEST_F(HdtProxyTest, TheProcessorReportsTheHeadersOfBothItsChildren) {
    powerUp();
    const auto cpu = object<TAVO::HWDebug::CpuDebug_v1_1>(device, "cpu0");
    const auto status = read(cpu->getheaderStatusGetMethod());
    EXPECT_EQ(status.headers, (std::vector<TAVO::dto::Base::Header>{{"JTAG", 1, 1, 0}, {"HDT", 1, 1, 0}}));
    ASSERT_EQ(status.connections.size(), 1u);
    EXPECT_EQ(status.connections[0].second, std::vector<std::string>{"CPU0"});
}

TEST_F(HdtProxyTest, FrequencyIsThatOfTheTimeBase) {
    EXPECT_EQ(read(hdt->getOptionFrequencyGetMethod()).frequency, 100'000'000u);
}

struct LegacyHdtTest : HdtTest {
    LegacyHdtTest()
        : HdtTest("legacy") {}

    std::shared_ptr<TAVO::HWDebug::Hdt_v1_0> hdt =
        object<TAVO::HWDebug::CpuDebug_v1_0>(device, "cpu")->getHdt();
};

TEST_F(LegacyHdtTest, RequestsAndAnswersToo) {
    powerUp();
    done(hdt->getIoDbreqSetMethod(true));
    pass(microseconds(10));
    EXPECT_EQ(read(hdt->getIoDbrdyGetMethod()), allLines);
    EXPECT_EQ(read(hdt->getIoDbrdySnapShotGetMethod()), allLines);
    done(hdt->getIoDbrdySnapshotClearMethod());
    const auto frequency = std::make_shared<BoundMethod<hdt_records::FrequencyGetReply>>("frequencyGet", *hdt,
                                                                                         TAVO::dto::Params{});
    EXPECT_EQ(read(frequency).frequency, 100'000'000u);
}

} // namespace
