#include <gtest/gtest.h>

#include <tavo/client/hwdebug/i2c.h>
#include <tavo/simulator/models/temperature_sensor.h>
#include <tavo/simulator/objects/i2c.h>
#include <tavo/simulator/return_codes.h>
#include <tests/simulator/simulator_fixture.h>

namespace {

using namespace TAVO::simulator;
using Bytes = std::vector<std::uint8_t>;

struct I2cObjectTest : SimulatorFixture {
    std::shared_ptr<TAVO::Device> device = open();
    std::shared_ptr<TAVO::HWDebug::I2c_v1_0> i2c = object<TAVO::HWDebug::I2c_v1_0>(device, "i2c");

    void powerUp() {
        simulator.inspect([](Appliance& appliance) { appliance.board()->setPower(true); });
    }
    TAVO::HWDebug::I2c_v1_0_Structs::I2cTransfer transfer(int address, const Bytes& data, int count) {
        return called(device, i2c->getTransferMethod(address, 0, data, count))->value();
    }
};

TEST_F(I2cObjectTest, MemoryModuleAnswersOnlyWithPower) {
    const auto method = i2c->getTransferMethod(0x50, 0, {0}, 3);
    device->call(method);
    EXPECT_EQ(method->getResult().code, return_code::notAcknowledged);
    powerUp();
    EXPECT_EQ(transfer(0x50, {0}, 3).data, (Bytes{0x92, 0x11, 0x0B}));
}

TEST_F(I2cObjectTest, TemperatureOfTheBoardIsReadInHalfDegrees) {
    powerUp();
    EXPECT_EQ(transfer(0x48, {0}, 2).data, (Bytes{0x24, 0x80}));
    simulator.inspect([](Appliance& appliance) { appliance.board()->setTemperature(50.5); });
    EXPECT_EQ(transfer(0x48, {0}, 2).data, (Bytes{0x32, 0x80}));
}

TEST_F(I2cObjectTest, RepliesCountTheBytesThatWereAcknowledgedAndRead) {
    const auto result = transfer(0x54, {0x01, 0x00}, 5);
    EXPECT_EQ(result.first, 2);
    EXPECT_EQ(result.second, 5);
    const auto write = called(device, i2c->getWriteMethod(0x54, true, true, 0, {1, 2, 3}));
    EXPECT_EQ(write->value().value, 3);
    EXPECT_EQ(write->getResult().code, 0);
}

TEST_F(I2cObjectTest, AddressRetriesOutlastAWriteCycleInsideOneBatch) {
    device->call(i2c->getOptionAddressRetryLimitSetMethod(100));
    const auto batch = std::make_shared<TAVO::MulticallQueue>();
    const auto read = i2c->getTransferMethod(0x54, 0, {0x02, 0x00}, 2);
    batch->add(i2c->getWriteMethod(0x54, true, true, 0, {0x02, 0x00, 0xAB, 0xCD}));
    batch->add(read);
    device->multicall(batch);
    EXPECT_EQ(read->getResult().code, 0);
    EXPECT_EQ(read->value().data, (Bytes{0xAB, 0xCD}));
}

TEST_F(I2cObjectTest, OptionsAreKeptUntilTheApplianceIsReset) {
    EXPECT_EQ(called(device, i2c->getOptionSclFrequencySetMethod(400000))->getResult().code, 0);
    EXPECT_EQ(called(device, i2c->getOptionSclFrequencySetMethod(1))->getResult().code,
              return_code::badArgument);
    device->call(i2c->getOptionTimeoutSetMethod(11, 12));
    device->call(i2c->getOptionAckSetMethod(true, false));
    simulator.inspect([](Appliance& appliance) {
        auto& bus = appliance.get<I2c>("i2c").bus();
        EXPECT_EQ(bus.frequency(), 400000u);
        EXPECT_EQ(bus.options(), (I2cBus::Options{0, 11, 12, true, false}));
        appliance.reset();
        EXPECT_EQ(bus.frequency(), 100000u);
        EXPECT_EQ(bus.options(), I2cBus::Options{});
    });
}

TEST_F(I2cObjectTest, HeaderStatusTellsOfAPowerOnUntilCleared) {
    powerUp();
    auto status = called(device, i2c->getHeaderStatusGetMethod())->value();
    ASSERT_EQ(status.headers.size(), 1u);
    EXPECT_EQ(status.headers[0], (TAVO::dto::Base::Header{"I2C", 1, 1, 0}));
    ASSERT_EQ(status.connections.size(), 1u);
    EXPECT_EQ(status.connections[0], (TAVO::dto::Base::Connection{{"I2C"}, {"SMBUS"}}));
    device->call(i2c->getHeaderStatusClearMethod());
    status = called(device, i2c->getHeaderStatusGetMethod())->value();
    EXPECT_EQ(status.headers[0], (TAVO::dto::Base::Header{"I2C", 1, 0, 0}));
}

} // namespace
