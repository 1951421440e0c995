#include <tavo/simulator/objects/i2c.h>

#include <chrono>
#include <utility>

#include <tavo/client/hwdebug/i2c_records.h>
#include <tavo/simulator/models/eeprom.h>
#include <tavo/simulator/models/spd_image.h>
#include <tavo/simulator/models/temperature_sensor.h>
#include <tavo/simulator/objects/frequency_methods.h>
#include <tavo/simulator/objects/header_status_methods.h>

namespace TAVO::simulator {

namespace {

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
    on<TransferRequest, TransferReply>("transfer", [this](const TransferRequest& request, CallContext& call) {
        auto outcome = bus_.transfer(request.address, request.data, request.count, waitIn(call));
        Answer<TransferReply> answer{outcome.code, {}};
        answer.reply.first = outcome.acknowledged;
        answer.reply.second = static_cast<std::int32_t>(outcome.data.size());
        answer.reply.data = std::move(outcome.data);
        return answer;
    });
    on<ReadRequest, ReadReply>("read", [this](const ReadRequest& request, CallContext& call) {
        auto outcome = bus_.read(request.address, request.first, request.second, request.count, waitIn(call));
        Answer<ReadReply> answer{outcome.code, {}};
        answer.reply.value = static_cast<std::int32_t>(outcome.data.size());
        answer.reply.data = std::move(outcome.data);
        return answer;
    });
    on<WriteRequest, WriteReply>("write", [this](const WriteRequest& request, CallContext& call) {
        const auto outcome =
            bus_.write(request.address, request.first, request.second, request.data, waitIn(call));
        Answer<WriteReply> answer{outcome.code, {}};
        answer.reply.value = outcome.acknowledged;
        return answer;
    });
}

void I2c::serveOptions() {
    serveFrequency(*this, "optionSclFrequencyGet", "optionSclFrequencySet", bus_);
    on<None, OptionAddressRetryLimitGetReply>("optionAddressRetryLimitGet", [this] {
        OptionAddressRetryLimitGetReply reply;
        reply.limit = bus_.options().addressRetryLimit;
        return reply;
    });
    using RetryRequest = OptionAddressRetryLimitSetRequest;
    on<RetryRequest, None>("optionAddressRetryLimitSet", [this](const RetryRequest& request) {
        auto options = bus_.options();
        options.addressRetryLimit = request.limit;
        return return_code::badUnless(bus_.setOptions(options));
    });
    on<None, OptionTimeoutGetReply>("optionTimeoutGet", [this] {
        OptionTimeoutGetReply reply;
        reply.first = bus_.options().busyTimeout;
        reply.second = bus_.options().stretchTimeout;
        return reply;
    });
    on<OptionTimeoutSetRequest, None>("optionTimeoutSet", [this](const OptionTimeoutSetRequest& request) {
        auto options = bus_.options();
        options.busyTimeout = request.first;
        options.stretchTimeout = request.second;
        return return_code::badUnless(bus_.setOptions(options));
    });
    on<None, OptionAckGetReply>("optionAckGet", [this] {
        OptionAckGetReply reply;
        reply.first = bus_.options().acknowledgeLastRead;
        reply.second = bus_.options().stopAtDataNack;
        return reply;
    });
    on<OptionAckSetRequest, None>("optionAckSet", [this](const OptionAckSetRequest& request) {
        auto options = bus_.options();
        options.acknowledgeLastRead = request.first;
        options.stopAtDataNack = request.second;
        bus_.setOptions(options);
    });
}

} // namespace TAVO::simulator
