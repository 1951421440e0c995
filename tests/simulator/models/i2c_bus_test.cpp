#include <stdexcept>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tavo/simulator/models/eeprom.h>
#include <tavo/simulator/models/i2c_bus.h>
#include <tavo/simulator/models/temperature_sensor.h>
#include <tavo/simulator/return_codes.h>
#include <tests/simulator/models/hand_clock.h>
#include <tests/support/allocation_meter.h>

namespace {

using namespace TAVO::simulator;
using Bytes = std::vector<std::uint8_t>;

// Acknowledges only bytes below 0x80, and tells what it saw.
struct PickyDevice : I2cDevice {
    std::string log;
    bool address(Direction direction) override {
        log += direction == Direction::write ? "W" : "R";
        return true;
    }
    bool write(std::uint8_t byte) override {
        log += byte < 0x80 ? "+" : "-";
        return byte < 0x80;
    }
    std::uint8_t read() override {
        log += "r";
        return 0x5A;
    }
    void stop() override { log += "P"; }
};

struct I2cBusTest : testing::Test, tests::HandClock {
    I2cBus bus;
    std::shared_ptr<PickyDevice> picky = std::make_shared<PickyDevice>();
    std::shared_ptr<Eeprom> small =
        std::make_shared<Eeprom>(Eeprom::bytes256, Bytes{10, 11, 12, 13}, [t = time] { return *t; });
    std::shared_ptr<Eeprom> large =
        std::make_shared<Eeprom>(Eeprom::kilobytes64, Bytes{}, [t = time] { return *t; });
    std::shared_ptr<TemperatureSensor> sensor = std::make_shared<TemperatureSensor>(board);
    I2cBus::Wait wait = [this](std::uint64_t duration) { advance(duration); };

    I2cBusTest() {
        bus.attach(0x20, picky);
        bus.attach(0x48, sensor);
        bus.attach(0x50, small);
        bus.attach(0x54, large);
    }
    std::int32_t put(std::int32_t address, Bytes data) { return bus.transfer(address, data, 0, wait).code; }
    Bytes get(std::int32_t address, Bytes pointer, std::int32_t count) {
        const auto outcome = bus.transfer(address, pointer, count, wait);
        EXPECT_EQ(outcome.code, return_code::done);
        return outcome.data;
    }
};

TEST_F(I2cBusTest, TransferWritesThenReadsBehindARepeatedStart) {
    const Bytes data{1, 2};
    const auto outcome = bus.transfer(0x20, data, 2, wait);
    EXPECT_EQ(outcome.code, return_code::done);
    EXPECT_EQ(outcome.acknowledged, 2);
    EXPECT_EQ(outcome.data, (Bytes{0x5A, 0x5A}));
    EXPECT_EQ(picky->log, "W++RrrP");
}

TEST_F(I2cBusTest, TransferLeavesOutPartsOfNoBytes) {
    bus.transfer(0x20, {}, 1, wait);
    EXPECT_EQ(picky->log, "RrP");
    picky->log.clear();
    bus.transfer(0x20, Bytes{1}, 0, wait);
    EXPECT_EQ(picky->log, "W+P");
    picky->log.clear();
    EXPECT_EQ(bus.transfer(0x7F, {}, 0, wait).code, return_code::done);
    EXPECT_EQ(picky->log, "");
}

TEST_F(I2cBusTest, ReadAndWriteGoOnWithoutStartUntilTheStop) {
    EXPECT_EQ(bus.write(0x20, true, false, Bytes{1}, wait).code, return_code::done);
    EXPECT_EQ(bus.write(0x20, false, false, Bytes{2}, wait).code, return_code::done);
    EXPECT_EQ(bus.read(0x20, true, false, 1, wait).code, return_code::done);
    EXPECT_EQ(bus.read(0x20, false, true, 1, wait).code, return_code::done);
    EXPECT_EQ(picky->log, "W++RrrP");
    EXPECT_EQ(bus.read(0x20, false, true, 1, wait).code, return_code::notAcknowledged);
}

TEST_F(I2cBusTest, GoingOnInTheOtherDirectionNeedsAStart) {
    bus.write(0x20, true, false, Bytes{1}, wait);
    EXPECT_EQ(bus.read(0x20, false, true, 1, wait).code, return_code::notAcknowledged);
}

TEST_F(I2cBusTest, NobodyAcknowledgesAnAbsentAddress) {
    const auto outcome = bus.read(0x33, true, true, 4, wait);
    EXPECT_EQ(outcome.code, return_code::notAcknowledged);
    EXPECT_TRUE(outcome.data.empty());
    EXPECT_EQ(bus.write(0x33, true, true, Bytes{1}, wait).code, return_code::notAcknowledged);
    EXPECT_EQ(bus.transfer(0x33, Bytes{1}, 1, wait).code, return_code::notAcknowledged);
}

TEST_F(I2cBusTest, RefusesAddressesAndCountsOutOfRange) {
    EXPECT_EQ(bus.read(0x80, true, true, 1, wait).code, return_code::badArgument);
    EXPECT_EQ(bus.write(-1, true, true, Bytes{1}, wait).code, return_code::badArgument);
    EXPECT_EQ(bus.read(0x50, true, true, 65537, wait).code, return_code::badArgument);
    EXPECT_EQ(bus.transfer(0x50, {}, -1, wait).code, return_code::badArgument);
    EXPECT_EQ(bus.read(0x50, true, true, 65536, wait).data.size(), 65536u);
    EXPECT_THROW(bus.attach(0x50, picky), std::invalid_argument);
    EXPECT_THROW(bus.attach(0x80, picky), std::invalid_argument);
}

TEST_F(I2cBusTest, WriteStopsAtAnUnacknowledgedByteUnlessToldToGoOn) {
    const Bytes data{1, 0x90, 2};
    auto outcome = bus.write(0x20, true, true, data, wait);
    EXPECT_EQ(outcome.code, return_code::notAcknowledged);
    EXPECT_EQ(outcome.acknowledged, 1);
    EXPECT_EQ(picky->log, "W+-P");

    picky->log.clear();
    auto options = bus.options();
    options.stopAtDataNack = false;
    ASSERT_TRUE(bus.setOptions(options));
    outcome = bus.write(0x20, true, true, data, wait);
    EXPECT_EQ(outcome.code, return_code::notAcknowledged);
    EXPECT_EQ(outcome.acknowledged, 2);
    EXPECT_EQ(picky->log, "W+-+P");
}

TEST_F(I2cBusTest, DividesItsBaseFrequency) {
    EXPECT_EQ(bus.frequency(), 100'000u);
    ASSERT_TRUE(bus.setFrequency(400'000));
    EXPECT_EQ(bus.frequency(), 400'000u);
    EXPECT_EQ(bus.divider(), 120u);
    ASSERT_TRUE(bus.setFrequency(333'333));
    EXPECT_EQ(bus.divider(), 145u);
    EXPECT_EQ(bus.frequency(), 331'034u);
    EXPECT_FALSE(bus.setFrequency(999));
    EXPECT_FALSE(bus.setFrequency(1'000'001));
    EXPECT_EQ(bus.divider(), 145u);
}

TEST_F(I2cBusTest, EepromReadsOnFromWhereItWasAndWrapsAtItsEnd) {
    EXPECT_EQ(get(0x50, {1}, 2), (Bytes{11, 12}));
    EXPECT_EQ(get(0x50, {}, 1), (Bytes{13}));
    EXPECT_EQ(get(0x50, {0xFF}, 2), (Bytes{0xFF, 10}));
}

TEST_F(I2cBusTest, EepromIsBusyAfterAWriteAndAnswersWhenTheCycleIsOver) {
    EXPECT_EQ(put(0x50, {0, 77}), return_code::done);
    EXPECT_EQ(bus.transfer(0x50, Bytes{0}, 1, wait).code, return_code::notAcknowledged);
    advance(Eeprom::writeCycle);
    EXPECT_EQ(get(0x50, {0}, 1), Bytes{77});
}

TEST_F(I2cBusTest, AddressRetriesOutlastAWriteCycle) {
    auto options = bus.options();
    options.addressRetryLimit = 100;
    ASSERT_TRUE(bus.setOptions(options));
    EXPECT_EQ(put(0x50, {0, 77}), return_code::done);
    const auto before = *time;
    EXPECT_EQ(get(0x50, {0}, 1), Bytes{77});
    EXPECT_GE(*time - before, Eeprom::writeCycle);
    EXPECT_LT(*time - before, Eeprom::writeCycle + 1000);
}

TEST_F(I2cBusTest, RetriesAtAnAbsentAddressTakeNineClocksEachAndEnd) {
    auto options = bus.options();
    options.addressRetryLimit = 9;
    ASSERT_TRUE(bus.setOptions(options));
    const auto before = *time;
    EXPECT_EQ(bus.read(0x33, true, true, 1, wait).code, return_code::notAcknowledged);
    EXPECT_EQ(*time - before, 900u);
    options.addressRetryLimit = 1001;
    EXPECT_FALSE(bus.setOptions(options));
}

TEST_F(I2cBusTest, EepromWritesWrapInsideThePage) {
    EXPECT_EQ(put(0x50, {6, 1, 2, 3, 4}), return_code::done);
    advance(Eeprom::writeCycle);
    EXPECT_EQ(get(0x50, {0}, 9), (Bytes{3, 4, 12, 13, 0xFF, 0xFF, 1, 2, 0xFF}));
}

TEST_F(I2cBusTest, LargeEepromHasAddressesOfTwoBytesAndPagesOf128) {
    EXPECT_EQ(put(0x54, {0x12, 0x7F, 1, 2}), return_code::done);
    advance(Eeprom::writeCycle);
    EXPECT_EQ(get(0x54, {0x12, 0x7F}, 2), (Bytes{1, 0xFF}));
    EXPECT_EQ(get(0x54, {0x12, 0x00}, 1), Bytes{2});
    EXPECT_EQ(get(0x54, {0xFF, 0xFF}, 2).size(), 2u);
}

TEST_F(I2cBusTest, EepromForgetsDataThatNoStopFollows) {
    bus.write(0x50, true, false, Bytes{0, 99}, wait);
    EXPECT_EQ(bus.read(0x50, true, true, 1, wait).code, return_code::done);
    EXPECT_EQ(get(0x50, {0}, 1), Bytes{10});
}

TEST_F(I2cBusTest, DevicesOfTheBoardAnswerOnlyWithPower) {
    I2cBus other;
    other.attach(0x50, std::make_shared<Eeprom>(
                           Eeprom::bytes256, Bytes{1}, [t = time] { return *t; },
                           [b = board] { return b->powered(); }));
    EXPECT_EQ(other.read(0x50, true, true, 1, wait).code, return_code::notAcknowledged);
    EXPECT_EQ(bus.read(0x48, true, true, 1, wait).code, return_code::notAcknowledged);
    board->setPower(true);
    EXPECT_EQ(other.read(0x50, true, true, 1, wait).data, Bytes{1});
    EXPECT_EQ(bus.read(0x48, true, true, 1, wait).code, return_code::done);
}

TEST_F(I2cBusTest, SensorTellsTemperaturesInHalfDegrees) {
    board->setPower(true);
    EXPECT_EQ(get(0x48, {0}, 2), (Bytes{0x24, 0x80}));
    board->setTemperature(-10.0);
    EXPECT_EQ(get(0x48, {0}, 2), (Bytes{0xF6, 0x00}));
    board->setTemperature(300.0);
    EXPECT_EQ(get(0x48, {0}, 2), (Bytes{0x7D, 0x00}));
}

TEST_F(I2cBusTest, SensorKeepsItsLimitsUntilPowerGoes) {
    board->setPower(true);
    EXPECT_EQ(get(0x48, {2}, 2), (Bytes{0x4B, 0x00}));
    EXPECT_EQ(get(0x48, {3}, 2), (Bytes{0x50, 0x00}));
    EXPECT_EQ(put(0x48, {3, 0x3C, 0xFF}), return_code::done);
    EXPECT_EQ(get(0x48, {}, 2), (Bytes{0x3C, 0x80}));
    EXPECT_EQ(put(0x48, {0, 1, 2}), return_code::done);
    EXPECT_EQ(get(0x48, {0}, 2), (Bytes{0x24, 0x80}));
    board->setPower(false);
    board->setPower(true);
    EXPECT_EQ(get(0x48, {3}, 2), (Bytes{0x50, 0x00}));
}

TEST_F(I2cBusTest, SensorThatIsShutDownKeepsItsLastMeasurement) {
    board->setPower(true);
    EXPECT_EQ(put(0x48, {1, 1}), return_code::done);
    board->setTemperature(50);
    EXPECT_EQ(get(0x48, {1}, 1), Bytes{1});
    EXPECT_EQ(get(0x48, {0}, 2), (Bytes{0x24, 0x80}));
    EXPECT_EQ(put(0x48, {1, 0}), return_code::done);
    EXPECT_EQ(get(0x48, {0}, 2), (Bytes{0x32, 0x00}));
}

TEST_F(I2cBusTest, AnEndlessWriteTakesNoMoreMemoryThanAPage) {
    ASSERT_EQ(bus.write(0x54, true, false, Bytes{0x01, 0x00}, wait).code, return_code::done);
    const Bytes data(65536, 0x77);
    const support::AllocationMeter memory;
    for (int i = 0; i < 8; ++i)
        ASSERT_EQ(bus.write(0x54, false, false, data, wait).code, return_code::done);
    EXPECT_LT(memory.peak(), 16u * 1024);
    ASSERT_EQ(bus.write(0x54, false, true, Bytes{0x11}, wait).code, return_code::done);
    advance(Eeprom::writeCycle);
    auto page = Bytes(128, 0x77);
    page[0] = 0x11;
    EXPECT_EQ(get(0x54, {0x01, 0x00}, 128), page) << "the last byte that came for each place";
}

} // namespace
