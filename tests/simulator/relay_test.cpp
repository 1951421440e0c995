#include <tests/simulator/simulator_fixture.h>

#include <tavo/simulator/objects/relay.h>

namespace {

using namespace TAVO::simulator;
using std::chrono::milliseconds;

class Relays : public SimulatorFixture {
protected:
    Relays() { freeze(); }
    bool state() { return called(device, relay->getGetMethod())->value().state != 0; }
    int toggle(int value) { return called(device, relay->getToggleMethod(value))->returnCode(); }

    std::shared_ptr<TAVO::Device> device = open();
    std::shared_ptr<CommonModules::Relay_v1_0> relay =
        object<CommonModules::Relay_v1_0>(device, "bench.lamp");
};

TEST_F(Relays, AreOffUntilTheyAreSet) {
    EXPECT_FALSE(state());
    EXPECT_EQ(called(device, relay->getSetMethod(true))->returnCode(), 0);
    EXPECT_TRUE(state());
    simulator.inspect([](Appliance& appliance) {
        EXPECT_TRUE(appliance.get<Relay>("bench.lamp").state());
        EXPECT_FALSE(appliance.get<Relay>("bench.fan").state());
        EXPECT_THROW(appliance.get<CmosRelay>("bench.lamp"), std::out_of_range);
    });
}

TEST_F(Relays, ToggleByZeroStays) {
    EXPECT_EQ(toggle(0), 0);
    EXPECT_TRUE(state());
    pass(milliseconds(100000));
    EXPECT_TRUE(state());
    toggle(0);
    EXPECT_FALSE(state());
}

TEST_F(Relays, ToggleByMillisecondsComesBack) {
    EXPECT_EQ(toggle(200), 0);
    EXPECT_TRUE(state());
    pass(milliseconds(199));
    EXPECT_TRUE(state());
    pass(milliseconds(1));
    EXPECT_FALSE(state());
}

TEST_F(Relays, SetEndsAPulse) {
    toggle(200);
    called(device, relay->getSetMethod(true));
    pass(milliseconds(500));
    EXPECT_TRUE(state());
}

TEST_F(Relays, ANegativeToggleIsRefused) {
    EXPECT_EQ(toggle(-1), return_code::badArgument);
    EXPECT_FALSE(state());
}

TEST_F(Relays, APulseEndsInsideABatchThatSleeps) {
    const auto during = relay->getGetMethod(), after = relay->getGetMethod();
    const auto batch = std::make_shared<TAVO::MulticallQueue>();
    batch->add(relay->getToggleMethod(2));
    batch->add(during);
    batch->add(device->getSystem()->getUSleepMethod(2000));
    batch->add(after);
    device->multicall(batch);
    EXPECT_EQ(during->value().state, 1);
    EXPECT_EQ(after->value().state, 0);
}

TEST_F(Relays, AnyVersionOfARelayIsServedButNotOfACmosRelay) {
    device.reset();
    simulator.inspect([](Appliance& appliance) { appliance.get("power").setVersion("2.0.0"); });
    EXPECT_EQ(object<CommonModules::Relay_v1_0>(open(), "power")->version().text, "2.0.0");
    simulator.inspect([](Appliance& appliance) { appliance.get("cmos").setVersion("2.0.0"); });
    EXPECT_THROW(open(), TAVO::SpecificationError);
    EXPECT_FALSE(simulator.lockHolder());
}

TEST_F(Relays, ACmosRelayCountsItsPulses) {
    const auto cmos = object<CommonModules::CmosRelay_v1_0>(device, "cmos");
    EXPECT_EQ(called(device, cmos->getCmosClearMethod(250))->returnCode(), 0);
    EXPECT_EQ(called(device, cmos->getCmosClearMethod(-1))->returnCode(), return_code::badArgument);
    EXPECT_EQ(called(device, cmos->getCmosClearMethod(0))->returnCode(), 0);
    simulator.inspect([](Appliance& appliance) {
        EXPECT_EQ(appliance.get<CmosRelay>("cmos").pulses(), (std::vector<std::int32_t>{250, 0}));
    });
}

TEST_F(Relays, ACmosPulseTooLongFailsItsBatch) {
    const auto cmos = object<CommonModules::CmosRelay_v1_0>(device, "cmos");
    const auto first = cmos->getCmosClearMethod(1), second = cmos->getCmosClearMethod(60001),
               third = cmos->getCmosClearMethod(1);
    const auto batch = std::make_shared<TAVO::MulticallQueue>();
    for (const auto& method : {first, second, third})
        batch->add(method);
    try {
        device->multicall(batch);
        FAIL() << "no error";
    } catch (const TAVO::ExecutionError& error) {
        EXPECT_EQ(error.failedMethod(), second);
        EXPECT_EQ(error.failedMethodIndex(), 1u);
    }
    EXPECT_EQ(first->returnCode(), 0);
    EXPECT_FALSE(third->isResultSet());
}

} // namespace
