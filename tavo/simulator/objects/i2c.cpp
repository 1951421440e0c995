#include <tavo/simulator/objects/i2c.h>

#include <chrono>
#include <utility>

#include <tavo/client/hwdebug/i2c.h>
#include <tavo/simulator/models/eeprom.h>
#include <tavo/simulator/models/spd_image.h>
#include <tavo/simulator/models/temperature_sensor.h>
#include <tavo/simulator/objects/frequency_methods.h>
#include <tavo/simulator/objects/header_status_methods.h>

namespace TAVO::simulator {

namespace {

namespace i2c_v1_0 = TAVOXTranscode::i2c_v1_0;
using namespace dto::i2c;

I2cBus::Wait waitIn(CallContext& call) {
    return [&call](std::uint64_t duration) { call.delay(std::chrono::microseconds(duration)); };
}

} // namespace

I2c::I2c(std::shared_ptr<Board> board)
    : SimulatedObject("i2c", "1.0")
    , board_(std::move(board))
    , headerStatus_(board_, {"I2C"}, {"SMBUS"}) {
    serveTransfers();
    serveOptions();
    serveHeaderStatus(*this, headerStatus_);
}

void I2c::reset() {
    bus_.setOptions({});
    bus_.setFrequency(I2cBus::defaultFrequency);
    headerStatus_.clear();
}

void I2c::attachStandardDevices() {
    const auto now = [board = board_] { return board->now(); };
    const auto powered = [board = board_] { return board->powered(); };
    bus_.attach(0x48, std::make_shared<TemperatureSensor>(board_));
    bus_.attach(0x50, std::make_shared<Eeprom>(Eeprom::bytes256, spdImage(), now, powered));
    bus_.attach(0x54, std::make_shared<Eeprom>(Eeprom::kilobytes64, std::vector<std::uint8_t>(), now));
}

void I2c::serveTransfers() {
    on(i2c_v1_0::transfer, [this](const TransferRequest& request, CallContext& call) {
        auto outcome = bus_.transfer(request.address, request.data, request.count, waitIn(call));
        const auto count = outcome.data.size();
        return Answer<TransferReply>{
            outcome.code, makeRecord<TransferReply>(outcome.acknowledged, count, std::move(outcome.data))};
    });
    on(i2c_v1_0::read, [this](const ReadRequest& request, CallContext& call) {
        auto outcome = bus_.read(request.address, request.first, request.second, request.count, waitIn(call));
        const auto count = outcome.data.size();
        return Answer<ReadReply>{outcome.code, makeRecord<ReadReply>(count, std::move(outcome.data))};
    });
    on(i2c_v1_0::write, [this](const WriteRequest& request, CallContext& call) {
        const auto outcome =
            bus_.write(request.address, request.first, request.second, request.data, waitIn(call));
        return Answer<WriteReply>{outcome.code, makeRecord<WriteReply>(outcome.acknowledged)};
    });
}

void I2c::serveOptions() {
    serveFrequency(*this, i2c_v1_0::optionSclFrequencyGet, i2c_v1_0::optionSclFrequencySet, bus_);
    on(i2c_v1_0::optionAddressRetryLimitGet,
       [this] { return makeRecord<OptionAddressRetryLimitGetReply>(bus_.options().addressRetryLimit); });
    on(i2c_v1_0::optionAddressRetryLimitSet, [this](const OptionAddressRetryLimitSetRequest& request) {
        auto options = bus_.options();
        options.addressRetryLimit = request.limit;
        return return_code::badUnless(bus_.setOptions(options));
    });
    on(i2c_v1_0::optionTimeoutGet, [this] {
        const auto& options = bus_.options();
        return makeRecord<OptionTimeoutGetReply>(options.busyTimeout, options.stretchTimeout);
    });
    on(i2c_v1_0::optionTimeoutSet, [this](const OptionTimeoutSetRequest& request) {
        auto options = bus_.options();
        options.busyTimeout = request.first;
        options.stretchTimeout = request.second;
        return return_code::badUnless(bus_.setOptions(options));
    });
    on(i2c_v1_0::optionAckGet, [this] {
        const auto& options = bus_.options();
        return makeRecord<OptionAckGetReply>(options.acknowledgeLastRead, options.stopAtDataNack);
    });
    on(i2c_v1_0::optionAckSet, [this](const OptionAckSetRequest& request) {
        auto options = bus_.options();
        options.acknowledgeLastRead = request.first;
        options.stopAtDataNack = request.second;
        bus_.setOptions(options);
    });
}

} // namespace TAVO::simulator
